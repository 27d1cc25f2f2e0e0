#include "MZTBarInfoConst.h"

namespace {
int GBarStandardCode = 1;
}

int BarStandardCode() { return GBarStandardCode; }
void SetBarStandardCode(int ACode) { GBarStandardCode = ACode; }
