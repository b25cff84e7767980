#include "analysis/SharedBytes.h"
