// glibc's allocator gives back what lies at its end by itself, and pages in between only when
// asked.
#include "platform/free_memory.h"

#include <malloc.h>

namespace quillon {

void ReturnFreeMemory() {
  malloc_trim(0);
}

}  // namespace quillon
