// What goes wrong while an old file is read, apart from what goes wrong with its rows afterwards.
#pragma once

#include "platform/failure.h"

namespace quillon {

// The text does not name the file; whoever knows it adds the name.
class ReadingFailure : public Failure {
  using Failure::Failure;
};

}  // namespace quillon
