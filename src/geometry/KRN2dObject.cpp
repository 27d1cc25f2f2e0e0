#include "KRN2dObject.h"

#include "KRN2dObjectPool.h"

void TKRNObjectDeleter::operator()(TKRN2dObject* AObject) const { KRN2dObjectPool().DelObject(AObject); }
