// Products of 64f whose operands lie anywhere: what all families call.
#include "products/factors.h"

namespace kesl {
KESL_FACTOR_FUNCTIONS(, double)
}
