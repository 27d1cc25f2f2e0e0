#include "SysUtils.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

#include <cmath>
#include <limits>

TEST(SysUtils, TrimRemovesControlsAndBlanksOnly) {
  EXPECT_EQ(Trim(QStringLiteral(" \t\r\n a b \x01")), QStringLiteral("a b"));
  EXPECT_EQ(Trim(QStringLiteral("\u3000x\u3000")), QStringLiteral("\u3000x\u3000"));  // ideographic space stays
  EXPECT_EQ(TrimLeft(QStringLiteral("  x ")), QStringLiteral("x "));
  EXPECT_EQ(TrimRight(QStringLiteral("  x ")), QStringLiteral("  x"));
  EXPECT_EQ(Trim(QStringLiteral("   ")), QString());
}

TEST(SysUtils, CaseRulesAreAsciiOnly) {
  EXPECT_TRUE(SameText(QStringLiteral("ParamVal"), QStringLiteral("PARAMVAL")));
  EXPECT_FALSE(SameText(QStringLiteral("ä"), QStringLiteral("Ä")));
  EXPECT_LT(CompareText(QStringLiteral("abc"), QStringLiteral("ABD")), 0);
  EXPECT_GT(CompareText(QStringLiteral("abcd"), QStringLiteral("ABC")), 0);
  EXPECT_EQ(UpperCase(QStringLiteral("a钢z")), QStringLiteral("A钢Z"));
  EXPECT_EQ(LowerCase(QStringLiteral("A钢Z")), QStringLiteral("a钢z"));
}

TEST(SysUtils, StrToIntAcceptsOnlyWholeIntegers) {
  const struct {
    const char* Text;
    int Value;
  } Good[] = {{"12", 12},   {" 12", 12},  {"-5", -5},           {"+7", 7},
              {"$1F", 31},  {"0x1f", 31}, {"2147483647", 2147483647}, {"-2147483648", std::numeric_limits<int>::min()}};
  for (const auto& C : Good) {
    SCOPED_TRACE(C.Text);
    EXPECT_EQ(StrToInt(QString::fromUtf8(C.Text)), C.Value);
  }
  const char* Bad[] = {"", " ", "12 ", "1.5", "abc", "2147483648", "--1", "0x", "$", "1e3", "１２"};
  for (const char* B : Bad) {
    SCOPED_TRACE(B);
    int V = 99;
    EXPECT_FALSE(TryStrToInt(QString::fromUtf8(B), V));
    EXPECT_EQ(V, 99);
    try {
      StrToInt(QString::fromUtf8(B));
      ADD_FAILURE() << "no exception";
    } catch (const EConvertError& E) {
      EXPECT_EQ(E.Message(), QStringLiteral("'%1' is not a valid integer value").arg(QString::fromUtf8(B)));
    }
  }
  EXPECT_EQ(StrToIntDef(QStringLiteral("x"), -1), -1);
  EXPECT_EQ(StrToInt64(QStringLiteral("9223372036854775807")), std::numeric_limits<qint64>::max());
}

TEST(SysUtils, StrToFloatIsStrict) {
  const struct {
    const char* Text;
    double Value;
  } Good[] = {{"1.5", 1.5}, {" 2 ", 2}, {"-1e3", -1000}, {".5", 0.5}, {"5.", 5}, {"+0.25E-1", 0.025},
               {"1e-400", 0}, {"\t7\n", 7},
               {"0.00000000000000000000000000000000000000000000000000000000000000000000000000001", 1e-77}};
  for (const auto& C : Good) {
    SCOPED_TRACE(C.Text);
    EXPECT_DOUBLE_EQ(StrToFloat(QString::fromUtf8(C.Text)), C.Value);
  }
  // Every value rounds exactly as the C library rounds it.
  std::mt19937_64 Rng(11);
  for (int I = 0; I < 20000; ++I) {
    const std::string T = std::to_string(Rng() % 2000000000) + "." + std::to_string(Rng()) + "e" +
                          std::to_string(int(Rng() % 40) - 20);
    SCOPED_TRACE(T);
    ASSERT_EQ(StrToFloat(QString::fromStdString(T)), std::strtod(T.c_str(), nullptr));
  }
  const char* Bad[] = {"", "1,5", "e5", "1e", ".", "abc", "1.2.3", "1e400", "nan", "inf"};
  for (const char* B : Bad) {
    SCOPED_TRACE(B);
    try {
      StrToFloat(QString::fromUtf8(B));
      ADD_FAILURE() << "no exception";
    } catch (const EConvertError& E) {
      EXPECT_EQ(E.Message(), QStringLiteral("'%1' is not a valid floating point value").arg(QString::fromUtf8(B)));
    }
  }
}

TEST(SysUtils, FloatToStrGeneralForm) {
  const struct {
    double Value;
    const char* Text;
  } Cases[] = {{0, "0"},
               {-0.0, "0"},
               {1, "1"},
               {0.1 + 0.2, "0.3"},
               {-2.5, "-2.5"},
               {1.0 / 3, "0.333333333333333"},
               {123456789012345.0, "123456789012345"},
               {-999999999999999.0, "-999999999999999"},
               {1e15, "1E15"},
               {-1e15, "-1E15"},
               {1.23456789012345678e17, "1.23456789012346E17"},
               {0.0001, "0.0001"},
               {0.00001, "1E-5"},
               {-1.5e-7, "-1.5E-7"},
               {std::numeric_limits<double>::quiet_NaN(), "NAN"},
               {std::numeric_limits<double>::infinity(), "INF"},
               {-std::numeric_limits<double>::infinity(), "-INF"}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Text);
    EXPECT_EQ(FloatToStr(C.Value), QString::fromUtf8(C.Text));
    QString Appended = QStringLiteral("x=");
    AppendFloatToStr(Appended, C.Value);
    EXPECT_EQ(Appended, QStringLiteral("x=") + QString::fromUtf8(C.Text));
  }
}

TEST(SysUtils, AppendIntIsNumber) {
  for (const qint64 V : {qint64(0), qint64(-1), qint64(42), std::numeric_limits<qint64>::min(),
                         std::numeric_limits<qint64>::max()}) {
    QString S = QStringLiteral("n");
    AppendInt(S, V);
    EXPECT_EQ(S, QStringLiteral("n") + QString::number(V));
  }
}

TEST(SysUtils, FormatFloatPictures) {
  const struct {
    const char* Format;
    double Value;
    const char* Text;
  } Cases[] = {
      {"0.######", 1.5, "1.5"},
      {"0.######", 2, "2"},
      {"0.######", 0.1234567, "0.123457"},
      {"0.######", -0.0000001, "0"},
      {"#.##", 0, ""},
      {"#.##", 0.5, ".5"},
      {"#.##", 12.345, "12.35"},
      {"0.00", 1.005, "1.00"},  // 1.005 is just below in binary
      {"0.00", 0.125, "0.13"},  // an exact half rounds away from zero
      {"#,##0.00", 1234567.891, "1,234,567.89"},
      {"#,##0", 999.5, "1,000"},
      {"0", -0.4, "0"},
      {"0.0", -1.25, "-1.3"},
      {"000", 7, "007"},
      {"0.#", 9.96, "10"},
      {"0.00E+00", 12345, "1.23E+04"},
      {"0.0E-0", 0.00012, "1.2E-4"},
      {"0;(0)", -5, "(5)"},
      {"0;(0);零", 0, "零"},
      {"\"L=\"0\"mm\"", 12, "L=12mm"},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(std::string(C.Format) + " " + std::to_string(C.Value));
    EXPECT_EQ(FormatFloat(QString::fromUtf8(C.Format), C.Value), QString::fromUtf8(C.Text));
  }
}

TEST(SysUtils, FormatFloatFixedIsFormatFloatWithHashes) {
  std::vector<double> Values = {0, -0.0, 0.5, -0.5, 0.0000005, -0.0000005, 0.00000049, 0.9999995, 9.9999995, 99999.9999996,
                                1e300, -1e-10, 123456789012345678.0, 0.1, 2.675, 1.0000005, 5e-7, 4.9999999e-7,
                                std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min(),
                                std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()};
  std::mt19937_64 Rng(3);
  std::uniform_real_distribution<double> Mantissa(-10, 10);
  for (int I = 0; I < 30000; ++I) Values.push_back(Mantissa(Rng) * std::pow(10.0, int(Rng() % 30) - 12));
  for (int I = 0; I < 3000; ++I) Values.push_back(std::round(Mantissa(Rng) * 1e7) / 1e7 + 5e-8);  // near halves
  for (const int Decimals : {1, 6, 15})
    for (const double V : Values) {
      const QString Format = QStringLiteral("0.") + QString(Decimals, u'#');
      ASSERT_EQ(FormatFloatFixed(V, Decimals), FormatFloat(Format, V)) << V << " " << Decimals;
    }
}
