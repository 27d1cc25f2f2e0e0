#pragma once
// Exceptions of the geometry library. Messages are UTF-8.

#include <stdexcept>
#include <string>

class EKRNException : public std::runtime_error {
public:
  explicit EKRNException(const std::string& AMessage) : std::runtime_error(AMessage) {}
};

class EKRNIntersectException : public EKRNException {
public:
  using EKRNException::EKRNException;
};

// Raised by the text forms when a number field is empty.
extern const char* const SKRNPolygonStringError;  // "多边形字符串格式错误"
