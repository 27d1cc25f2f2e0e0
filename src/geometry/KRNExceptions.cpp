#include "KRNExceptions.h"

const char* const SKRNPolygonStringError = "多边形字符串格式错误";
