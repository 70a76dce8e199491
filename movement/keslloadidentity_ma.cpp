// keslLoadIdentity.
#include "movement/copy.h"

KESL_LOAD_IDENTITY(32f)
KESL_LOAD_IDENTITY(64f)
