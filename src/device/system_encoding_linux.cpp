#include "device/system_encoding.h"

void useSystemEncoding() {}
