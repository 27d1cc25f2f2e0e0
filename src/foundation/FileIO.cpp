// Files by the exact bytes of their names, and whole-file reads and writes.

#include "SysUtils.h"

#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString ErrnoText(int AErr) { return QString::fromLocal8Bit(std::strerror(AErr)); }

// The length of the UTF-8 sequence at P (1..4), or 0 when the bytes there are not one.
int Utf8Length(const unsigned char* P, qsizetype ALeft) {
  const unsigned char C = P[0];
  int N;
  unsigned Min;
  if (C < 0x80) return 1;
  if ((C & 0xE0) == 0xC0) { N = 2; Min = 0x80; }
  else if ((C & 0xF0) == 0xE0) { N = 3; Min = 0x800; }
  else if ((C & 0xF8) == 0xF0) { N = 4; Min = 0x10000; }
  else return 0;
  if (ALeft < N) return 0;
  unsigned Cp = C & (0xFF >> (N + 1));
  for (int K = 1; K < N; ++K) {
    if ((P[K] & 0xC0) != 0x80) return 0;
    Cp = Cp << 6 | (P[K] & 0x3F);
  }
  // overlong forms, surrogates and values past Unicode are not UTF-8
  if (Cp < Min || (Cp >= 0xD800 && Cp <= 0xDFFF) || Cp > 0x10FFFF) return 0;
  return N;
}

}  // namespace

QString DecodeFileName(const QByteArray& ABytes) {
  QString R;
  R.reserve(ABytes.size());
  const auto* P = reinterpret_cast<const unsigned char*>(ABytes.constData());
  const qsizetype N = ABytes.size();
  for (qsizetype I = 0; I < N;) {
    const int L = Utf8Length(P + I, N - I);
    if (L == 0) {
      R += QChar(char16_t(0xDC00 + P[I]));
      ++I;
    } else {
      R += QString::fromUtf8(reinterpret_cast<const char*>(P + I), L);
      I += L;
    }
  }
  return R;
}

QByteArray EncodeFileName(const QString& AName) {
  QByteArray R;
  R.reserve(AName.size());
  qsizetype Start = 0;
  for (qsizetype I = 0; I < AName.size(); ++I) {
    const char16_t C = AName[I].unicode();
    // a lone low surrogate from DecodeFileName stands for the byte it kept
    const bool Lone = C >= 0xDC80 && C <= 0xDCFF && (I == 0 || !AName[I - 1].isHighSurrogate());
    if (!Lone) continue;
    R += AName.mid(Start, I - Start).toUtf8();
    R += char(C - 0xDC00);
    Start = I + 1;
  }
  R += AName.mid(Start).toUtf8();
  return R;
}

TFileStatus FileStatus(const QString& AFileName) {
  TFileStatus S;
  const QByteArray Name = EncodeFileName(AFileName);
  struct stat L {};
  if (::lstat(Name.constData(), &L) != 0) return S;
  S.IsLink = S_ISLNK(L.st_mode);
  struct stat St {};
  if (::stat(Name.constData(), &St) != 0) return S;  // a broken link
  S.Exists = true;
  S.IsDir = S_ISDIR(St.st_mode);
  S.IsFile = S_ISREG(St.st_mode);
  S.Size = qint64(St.st_size);
  S.Readable = ::access(Name.constData(), R_OK) == 0;
  return S;
}

bool OpenFileRaw(QFile& AFile, const QString& AFileName, QIODevice::OpenMode AMode, QString& AError) {
  int Flags = O_CLOEXEC;
  if ((AMode & QIODevice::ReadWrite) == QIODevice::ReadWrite) Flags |= O_RDWR | O_CREAT;
  else if (AMode & QIODevice::WriteOnly) Flags |= O_WRONLY | O_CREAT | O_TRUNC;
  else Flags |= O_RDONLY;
  const int Fd = ::open(EncodeFileName(AFileName).constData(), Flags, 0666);
  if (Fd < 0) {
    AError = ErrnoText(errno);
    return false;
  }
  if (!AFile.open(Fd, AMode, QFileDevice::AutoCloseHandle)) {
    AError = AFile.errorString();
    ::close(Fd);
    return false;
  }
  return true;
}

bool RemoveFileRaw(const QString& AFileName) {
  return ::unlink(EncodeFileName(AFileName).constData()) == 0 || errno == ENOENT;
}

bool RenameFileRaw(const QString& AFrom, const QString& ATo) {
  return ::rename(EncodeFileName(AFrom).constData(), EncodeFileName(ATo).constData()) == 0;
}

bool WriteFileAtomically(const QString& AFileName, const QByteArray& AData, QString& AError) {
  QByteArray Target = EncodeFileName(AFileName);
  struct stat L {};
  if (::lstat(Target.constData(), &L) == 0 && S_ISLNK(L.st_mode)) {
    // The link stays; the file it names takes the data.
    QByteArray Link(4096, '\0');
    const ssize_t N = ::readlink(Target.constData(), Link.data(), size_t(Link.size()));
    if (N <= 0 || N >= Link.size()) {
      AError = ErrnoText(errno);
      return false;
    }
    Link.truncate(qsizetype(N));
    if (!Link.startsWith('/')) {
      const qsizetype Slash = Target.lastIndexOf('/');
      Link = (Slash >= 0 ? Target.left(Slash + 1) : QByteArray()) + Link;
    }
    Target = Link;
  }
  struct stat St {};
  const bool Exists = ::stat(Target.constData(), &St) == 0;
  if (Exists && !S_ISREG(St.st_mode)) {
    AError = S_ISDIR(St.st_mode) ? QStringLiteral("是一个目录") : QStringLiteral("不是普通文件（设备或管道）");
    return false;
  }
  // A whole new file beside the target, moved over it only when complete.
  QByteArray Temp = Target + ".XXXXXX";
  const int Fd = ::mkstemp(Temp.data());
  if (Fd < 0) {
    AError = ErrnoText(errno);
    return false;
  }
  const auto Fail = [&](int AErr) {
    AError = ErrnoText(AErr);
    ::close(Fd);
    ::unlink(Temp.constData());
    return false;
  };
  mode_t Mode;
  if (Exists) {
    Mode = St.st_mode & 07777;
  } else {
    const mode_t Mask = ::umask(0);
    ::umask(Mask);
    Mode = 0666 & ~Mask;
  }
  if (::fchmod(Fd, Mode) != 0) return Fail(errno);
  const char* P = AData.constData();
  qsizetype Left = AData.size();
  while (Left > 0) {
    const ssize_t W = ::write(Fd, P, size_t(Left));
    if (W < 0) {
      if (errno == EINTR) continue;
      return Fail(errno);
    }
    P += W;
    Left -= W;
  }
  if (::fsync(Fd) != 0) return Fail(errno);
  if (::close(Fd) != 0) {
    const int Err = errno;
    ::unlink(Temp.constData());
    AError = ErrnoText(Err);
    return false;
  }
  if (::rename(Temp.constData(), Target.constData()) != 0) {
    const int Err = errno;
    ::unlink(Temp.constData());
    AError = ErrnoText(Err);
    return false;
  }
  return true;
}

bool ReadFileCapped(const QString& AFileName, qint64 AMaxBytes, QByteArray& AData, QString& AError) {
  const TFileStatus S = FileStatus(AFileName);
  if (S.IsDir) {
    AError = QStringLiteral("是一个目录");
    return false;
  }
  QFile F;
  if (!OpenFileRaw(F, AFileName, QIODevice::ReadOnly, AError)) return false;
  return ReadFileCapped(F, AMaxBytes, AData, AError);
}
