// The one place where Asio's own code is compiled (see ASIO_SEPARATE_COMPILATION).
#include <asio/impl/src.hpp>
