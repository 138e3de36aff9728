#include "QuilonUtilities/QuilonMathUtil.h"

#include <cmath>

double QuilonMathUtil::acosh(double x) { return std::acosh(x); }
