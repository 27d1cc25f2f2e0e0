#include "SelkaStreamUtils.h"

#include <QDir>
#include <QStringEncoder>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace {
QByteArray ReadAll(TBlockMemoryStream& S) {
  QByteArray B(qsizetype(S.GetSize()), '\0');
  S.First();
  S.Read(B.data(), B.size());
  return B;
}
}  // namespace

TEST(TBlockMemoryStream, CrossesBlockBoundaries) {
  TBlockMemoryStream S(4);
  S.Write("abcd", 4);  // exactly to the block's end
  EXPECT_EQ(S.GetPosition(), 4);
  S.Write("e", 1);  // continues at offset 0 of the next block
  EXPECT_EQ(S.GetSize(), 5);
  EXPECT_EQ(S.BlockCount(), 2);
  EXPECT_EQ(ReadAll(S), QByteArray("abcde"));

  // a write spanning several blocks, starting mid-block
  S.Seek(2, soBeginning);
  S.Write("0123456789", 10);
  EXPECT_EQ(S.GetSize(), 12);
  EXPECT_EQ(S.BlockCount(), 4);
  EXPECT_EQ(ReadAll(S), QByteArray("ab0123456789"));

  char Buf[5] = {};
  S.Seek(3, soBeginning);
  EXPECT_EQ(S.Read(Buf, 5), 5);
  EXPECT_EQ(QByteArray(Buf, 5), QByteArray("12345"));
}

TEST(TBlockMemoryStream, ReadsWhatIsThereAndNoMore) {
  TBlockMemoryStream S(3);
  S.Write("hello", 5);
  char Buf[16] = {};
  S.Seek(-2, soEnd);
  EXPECT_EQ(S.Read(Buf, 16), 2);
  EXPECT_EQ(QByteArray(Buf, 2), QByteArray("lo"));
  EXPECT_EQ(S.Read(Buf, 16), 0);
  S.Seek(10, soBeginning);
  EXPECT_EQ(S.Read(Buf, 1), 0);
  S.Seek(-1, soBeginning);
  EXPECT_EQ(S.Read(Buf, 1), 0);
  EXPECT_EQ(S.Write("x", 1), 0);
  S.First();
  EXPECT_EQ(S.Read(Buf, -1), 0);
}

TEST(TBlockMemoryStream, SetSizeAllocatesAndFreesBlocks) {
  TBlockMemoryStream S(8);
  S.SetSize(20);
  EXPECT_EQ(S.BlockCount(), 3);  // 20 / 8 + 1
  S.Seek(0, soEnd);
  EXPECT_EQ(S.GetPosition(), 20);
  S.SetSize(9);
  EXPECT_EQ(S.BlockCount(), 2);
  EXPECT_EQ(S.GetPosition(), 9);  // moved back to the end
  S.Clear();
  EXPECT_EQ(S.GetSize(), 0);
  EXPECT_EQ(S.GetPosition(), 0);
}

TEST(TBlockMemoryStream, TypedValuesRoundTripInMemoryOrder) {
  TBlockMemoryStream S(5);  // odd size: values straddle blocks
  const QUuid G = QUuid::fromString(QStringLiteral("{12345678-9abc-def0-1122-334455667788}"));
  S.WriteBoolean(true);
  S.WriteByte(0xAB);
  S.WriteWord(0xBEEF);
  S.WriteInteger(-123456);
  S.WriteLongWord(0xDEADBEEF);
  S.WriteInt64(std::numeric_limits<qint64>::min());
  S.WriteFloat(3.25);
  S.WriteCurrency(12.3456);
  S.WriteDateTime(45000.5);
  S.WriteGuid(G);
  S.WriteString(QStringLiteral("钢筋 A"));
  EXPECT_EQ(S.GetSize(), 1 + 1 + 2 + 4 + 4 + 8 + 8 + 8 + 8 + 16 + 4 + 8);
  S.First();
  EXPECT_TRUE(S.ReadBoolean());
  EXPECT_EQ(S.ReadByte(), 0xAB);
  EXPECT_EQ(S.ReadWord(), 0xBEEF);
  EXPECT_EQ(S.ReadInteger(), -123456);
  EXPECT_EQ(S.ReadLongWord(), 0xDEADBEEFu);
  EXPECT_EQ(S.ReadInt64(), std::numeric_limits<qint64>::min());
  EXPECT_EQ(S.ReadFloat(), 3.25);
  EXPECT_DOUBLE_EQ(S.ReadCurrency(), 12.3456);
  EXPECT_EQ(S.ReadDateTime(), 45000.5);
  EXPECT_EQ(S.ReadGuid(), G);
  EXPECT_EQ(S.ReadString(), QStringLiteral("钢筋 A"));
  // bytes are little-endian as in memory
  const QByteArray B = ReadAll(S);
  EXPECT_EQ(quint8(B[2]), 0xEF);
  EXPECT_EQ(quint8(B[3]), 0xBE);
}

TEST(TBlockMemoryStream, ShortReadsGiveZeroesAndNoHugeStrings) {
  TBlockMemoryStream S(16);
  S.WriteWord(0x1234);
  S.First();
  EXPECT_EQ(S.ReadInteger(), 0x1234);  // two bytes there, two missing
  S.Clear();
  S.WriteInteger(std::numeric_limits<qint32>::max());  // claims a giant string
  S.Write("a\0", 2);
  S.First();
  EXPECT_EQ(S.ReadString(), QStringLiteral("a"));
}

TEST(TBlockMemoryStream, FilesRoundTripAndMissingFilesRaise) {
  QTemporaryDir Dir;
  ASSERT_TRUE(Dir.isValid());
  const QString Path = Dir.filePath(QStringLiteral("x.bin"));
  TBlockMemoryStream S(7);
  for (int I = 0; I < 1000; ++I) S.WriteInteger(I);
  S.SaveToFile(Path);
  TBlockMemoryStream T(64);
  T.LoadFromFile(Path);
  EXPECT_EQ(T.GetSize(), 4000);
  EXPECT_EQ(T.GetPosition(), 0);
  T.Seek(4 * 999, soBeginning);
  EXPECT_EQ(T.ReadInteger(), 999);
  EXPECT_THROW(T.LoadFromFile(Dir.filePath(QStringLiteral("missing.bin"))), EFOpenError);
  EXPECT_EQ(T.GetSize(), 4000);  // left as it was
}

TEST(StreamText, LengthPrefixIsCutToItsSize) {
  const QString S300(300, u'x');
  const struct {
    int LenSize;
    qint64 Stored;
    qint64 Total;
  } Cases[] = {{1, 44, 1 + 44}, {2, 300, 2 + 300}, {4, 300, 4 + 300}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.LenSize);
    TBytesStream Out;
    WriteStrToStream(S300, Out, C.LenSize);
    EXPECT_EQ(Out.GetSize(), C.Total);
    quint32 Len = 0;
    std::memcpy(&Len, Out.Bytes().constData(), size_t(C.LenSize));
    EXPECT_EQ(Len, quint32(C.Stored));
    TBytesStream In(Out.Bytes());
    EXPECT_EQ(ReadUtf8StrFromStream(In, C.LenSize), QString(int(C.Stored), u'x'));
  }
}

TEST(StreamText, Utf8AndGbkStrings) {
  TBytesStream Out;
  WriteStrToStream(QStringLiteral("箍筋Φ8@100"), Out, 2);
  TBytesStream In(Out.Bytes());
  EXPECT_EQ(ReadUtf8StrFromStream(In, 2), QStringLiteral("箍筋Φ8@100"));

  // "中" is D6 D0 in code page 936
  TBytesStream Gbk(QByteArray("\x02\xD6\xD0", 3));
  EXPECT_EQ(ReadAnsiStrFromStream(Gbk, 1), QStringLiteral("中"));
  TBytesStream Back;
  WriteAnsiStrToStream(QStringLiteral("中"), Back, 1);
  EXPECT_EQ(Back.Bytes(), QByteArray("\x02\xD6\xD0", 3));
}

TEST(StreamText, TruncatedStringRaisesReadError) {
  TBytesStream Short(QByteArray("\x05\x00\x00\x00" "abc", 7));
  EXPECT_THROW(ReadUtf8StrFromStream(Short, 4), EReadError);
  TBytesStream NoLength(QByteArray("\x05", 1));
  EXPECT_THROW(ReadUtf8StrFromStream(NoLength, 2), EReadError);
}

TEST(StreamText, FloatToTextUsesHashDigits) {
  EXPECT_EQ(FloatToText(1.23456789, 6), QStringLiteral("1.234568"));
  EXPECT_EQ(FloatToText(100, 6), QStringLiteral("100"));
  EXPECT_EQ(FloatToText(-0.5, 0), QStringLiteral("-1"));
  EXPECT_EQ(FloatToText(0.125, 2), QStringLiteral("0.13"));
}
