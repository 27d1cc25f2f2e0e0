#pragma once
// The bar standard code: one process-wide setting from the host's region that
// every bar notation parse and unit conversion reads.

int BarStandardCode();
void SetBarStandardCode(int ACode);
