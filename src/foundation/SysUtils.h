#pragma once
// Text and number helpers shared by every module: trimming, ASCII case rules,
// strict conversions and float formatting, each with one fixed rule.

#include <QFile>
#include <QString>

class QIODevice;
#include <QByteArray>
#include <exception>

// Base of the system's own exceptions; carries the exact message text.
class Exception : public std::exception {
public:
  explicit Exception(QString AMessage);
  const QString& Message() const { return FMessage; }
  const char* what() const noexcept override { return FUtf8.constData(); }

private:
  QString FMessage;
  QByteArray FUtf8;
};

// Raised by the strict conversions.
class EConvertError : public Exception {
public:
  using Exception::Exception;
};

// Removes characters up to and including the blank (code <= 32) from both ends.
QString Trim(const QString& S);
QString TrimLeft(const QString& S);
QString TrimRight(const QString& S);

// ASCII-only case mapping and comparison, whatever the locale.
QChar AsciiUpCase(QChar C);
QString UpperCase(const QString& S);
QString LowerCase(const QString& S);
int CompareText(const QString& S1, const QString& S2);
bool SameText(const QString& S1, const QString& S2);

// Strict integer conversion: optional leading blanks, sign, decimal digits or a
// hex form ("$1F", "0x1F"); nothing after. Raises EConvertError on failure.
qint64 StrToInt64(const QString& S);
int StrToInt(const QString& S);
bool TryStrToInt64(QStringView S, qint64& AValue);
bool TryStrToInt(QStringView S, int& AValue);
int StrToIntDef(QStringView S, int ADefault);

// Strict float conversion with "." as decimal separator; blanks around are allowed.
double StrToFloat(const QString& S);
bool TryStrToFloat(QStringView S, double& AValue);
double StrToFloatDef(QStringView S, double ADefault);

// General float text: 15 significant digits, scientific outside 1E-5 .. 1E15.
QString FloatToStr(double AValue);

// Number pictures: "0" and "#" digit places, "." decimal point, "," thousands,
// "E+"/"E-" exponent, quoted literals, and up to three sections "pos;neg;zero".
QString FormatFloat(const QString& AFormat, double AValue);
// FormatFloat with "0." and AMaxDecimals '#' (1 to 15), made without parsing a format.
QString FormatFloatFixed(double AValue, int AMaxDecimals);
// The same text added to AOut.
void AppendFloatFixed(QString& AOut, double AValue, int AMaxDecimals);
// FloatToStr's text added to AOut (whole numbers without a string made on the way).
void AppendFloatToStr(QString& AOut, double AValue);
// QString::number's text added to AOut.
void AppendInt(QString& AOut, qint64 AValue);

// File names as the system spells them. Bytes that are not UTF-8 (a name made on
// another system) are kept as the code points U+DC80..U+DCFF, so a name taken from the
// command line and given back opens the same file under its exact bytes.
QString DecodeFileName(const QByteArray& ABytes);
QByteArray EncodeFileName(const QString& AName);

struct TFileStatus {
  bool Exists = false;   // the path names something (a link is followed)
  bool IsLink = false;   // the path itself is a symbolic link
  bool IsDir = false;
  bool IsFile = false;   // a regular file
  bool Readable = false;
  qint64 Size = 0;
};
TFileStatus FileStatus(const QString& AFileName);
// Opens the named file into AFile by its exact bytes; false with the cause in AError.
bool OpenFileRaw(QFile& AFile, const QString& AFileName, QIODevice::OpenMode AMode, QString& AError);
// Removes a file by its exact bytes; true when it is gone.
bool RemoveFileRaw(const QString& AFileName);
bool RenameFileRaw(const QString& AFrom, const QString& ATo);

// Writes AData to the file AFileName names, whole or not at all: a symbolic link is
// followed to its file, the file keeps its permissions, and a path that names no
// regular file (a directory, a device, a pipe) is refused. False with the cause in
// AError.
bool WriteFileAtomically(const QString& AFileName, const QByteArray& AData, QString& AError);

// Reads a whole file, or a pipe or standard input ("-" is not special here), refusing
// more than AMaxBytes with "文件太大" and the cap, so endless input cannot exhaust
// memory. False with the cause in AError.
bool ReadFileCapped(const QString& AFileName, qint64 AMaxBytes, QByteArray& AData, QString& AError);
bool ReadFileCapped(QIODevice& ADevice, qint64 AMaxBytes, QByteArray& AData, QString& AError);

