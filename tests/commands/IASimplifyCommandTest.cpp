#include "IASimplifyCommand.h"
