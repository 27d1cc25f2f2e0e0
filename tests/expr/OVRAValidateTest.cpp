#include "MZTBarInfoConst.h"
#include "OVRAExprValidate.h"
#include "OVRAUnitConvertor.h"
#include "ExprNodes.h"

#include <gtest/gtest.h>

TEST(TOVRAValidCheckerByRegExpr, RuleOrderAndOutputs) {
  TOVRAValidCheckerByRegExpr C(QStringLiteral("^(\\d+)x(\\d+)$\n^(\\d+)$\n"), QStringLiteral("$1 < $2\n 0 = 0 \n"),
                               QStringLiteral("$2 by $1"), QStringLiteral("无效"));
  QString Out;
  EXPECT_TRUE(C.Check(QStringLiteral("3x5"), Out));
  EXPECT_EQ(Out, QStringLiteral("5 by 3"));
  EXPECT_FALSE(C.Check(QStringLiteral("5x3"), Out));  // matched rule 1, failed; rule 2 is not tried
  EXPECT_EQ(Out, QStringLiteral("无效"));
  EXPECT_TRUE(C.Check(QStringLiteral("42"), Out));  // no template line for rule 2: the input stands
  EXPECT_EQ(Out, QStringLiteral("42"));
  EXPECT_FALSE(C.Check(QStringLiteral("abc"), Out));
  EXPECT_EQ(Out, QStringLiteral("无效"));

  QString E;
  EXPECT_FALSE(TOVRAValidCheckerByRegExpr::Validate(QStringLiteral("x"), QString(), QString(), QString(),
                                                    QStringLiteral("empty"), E));
  EXPECT_EQ(E, QStringLiteral("empty"));
  // a number is not a pass
  EXPECT_FALSE(TOVRAValidCheckerByRegExpr::Validate(QStringLiteral("7"), QStringLiteral("(\\d)"), QStringLiteral("$1 + 1"),
                                                    QString(), QStringLiteral("no"), E));
  // a malformed condition raises out of Check
  EXPECT_THROW(TOVRAValidCheckerByRegExpr::Validate(QStringLiteral("7"), QStringLiteral("(\\d)"), QStringLiteral("$1 +"),
                                                    QString(), QString(), E),
               EExpression);
}

TEST(TOVRAValidCheckerByRegExpr, VariablesAndTheFirstOne) {
  TOVRAValidCheckerByRegExpr C(QStringLiteral("^(\\d+)$"), QStringLiteral("$1 < MAXLEN"), QString(), QStringLiteral("x"));
  C.AddVariable(QStringLiteral("MaxLen"), 10);
  QString Out;
  // the first variable added never resolves: MAXLEN reads as '' and the compare is textual
  EXPECT_TRUE(C.Check(QStringLiteral("5"), Out) == (QStringLiteral("5") < QString()));
  TOVRAValidCheckerByRegExpr D(QStringLiteral("^(\\d+)$"), QStringLiteral("$1 < maxlen"), QString(), QStringLiteral("x"));
  D.AddVariable(QStringLiteral("first"), 0);
  D.AddVariable(QStringLiteral("MaxLen"), 10);
  EXPECT_TRUE(D.Check(QStringLiteral("5"), Out));
  EXPECT_FALSE(D.Check(QStringLiteral("50"), Out));
  const QRegularExpression Re(QStringLiteral("(a)(b)?(c)(d)(e)(f)(g)(h)(i)(j)(k)"));
  EXPECT_EQ(TOVRAValidCheckerByRegExpr::Substitute(QStringLiteral("$11-$10-$2-$1-$0"), Re.match(QStringLiteral("acdefghijk"))),
            QStringLiteral("k-j--a-acdefghijk"));
}

TEST(TOVRAUnitConvert, CheckFootFormats) {
  const struct {
    const char* Text;
    bool Valid;
    TFootFormat Format;
    double Mm;
  } Cases[] = {{"5-11 3/8", true, ffHyphen, 1812.925},
               {"5-12 1/2", false, ffHyphen, 0},   // 12 inches
               {"5-11 1/16", false, ffHyphen, 0},  // not an eighth
               {"5-11 2/16", true, ffHyphen, 1806.575},
               {"0511", true, ffFourLength, 1803.4},
               {"0511 1/2", true, ffFourLength, 1816.1},
               {"5'-11 3/8\"", true, ffHyphenExt, 1812.925},
               {"5'", true, ffHyphenExt, 1524},
               {"11\"", true, ffHyphenExt, 279.4},
               {"5.5", true, ffFloatNumber, 1676.4},
               {"5-11", true, ffNumInlineNum, 1803.4},
               {"5-12", false, ffHyphen, 0},
               {"5-11 1/0", false, ffHyphen, 0},
               {"", false, ffHyphen, 0},
               {"abc", false, ffHyphen, 0}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Text);
    TFootFormat F = ffHyphen;
    ASSERT_EQ(TOVRAUnitConvert::CheckFoot(QString::fromUtf8(C.Text), F), C.Valid);
    if (!C.Valid) continue;
    EXPECT_EQ(F, C.Format);
    double Mm = 0;
    ASSERT_TRUE(TOVRAUnitConvert::ConvertFootToMm(QString::fromUtf8(C.Text), Mm, F));
    EXPECT_NEAR(Mm, C.Mm, 1e-9);
  }
  double Mm;
  EXPECT_FALSE(TOVRAUnitConvert::ConvertFootToMm(QStringLiteral("5-11"), Mm, ffFourLength));
  EXPECT_NEAR(TOVRAUnitConvert::ConvertFootToM(QStringLiteral("10'")), 3.048, 1e-12);
}

TEST(TOVRAUnitConvert, MillimetresToFeetAndInches) {
  const struct {
    double Mm;
    TFootFormat Format;
    const char* Text;
  } Cases[] = {{1812.925, ffHyphenExt, "5'-11 3/8\""}, {1803.4, ffHyphenExt, "5'-11\""},
               {279.4, ffHyphenExt, "11\""},         {1812.925, ffHyphen, "5-11 3/8"},
               {1812.925, ffFourLength, "0511 3/8"},  {3124.2, ffFourLength, "1003"},
               {1676.4, ffFloatNumber, "5.5"},        {1803.4, ffNumInlineNum, "5-11"},
               {304.7999, ffNumInlineNum, "1-0"}};  // a hair under a foot is a foot
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Text);
    EXPECT_EQ(TOVRAUnitConvert::ConvertMmToFoot(C.Mm, C.Format), QString::fromUtf8(C.Text));
    TFootFormat F;
    if (C.Format != ffFloatNumber) {
      EXPECT_TRUE(TOVRAUnitConvert::CheckFoot(QString::fromUtf8(C.Text), F));
    }
  }
  EXPECT_EQ(TOVRAUnitConvert::GetFractionInch(1.5875), QStringLiteral("1/16"));
  EXPECT_EQ(TOVRAUnitConvert::GetFractionInch(12.7), QStringLiteral("1/2"));
  EXPECT_EQ(TOVRAUnitConvert::GetFractionInch(1.5), QString());
  EXPECT_EQ(TOVRAUnitConvert::ConvertMmToInch(28.575, ifHyphenExt), QStringLiteral("1 1/8"));
  EXPECT_EQ(TOVRAUnitConvert::ConvertMmToInch(38.1, ifFloatNumber), QStringLiteral("1.5"));
  TInchFormat IF;
  EXPECT_TRUE(TOVRAUnitConvert::CheckInch(QStringLiteral("1 3/8"), IF));
  EXPECT_EQ(IF, ifHyphenExt);
  EXPECT_FALSE(TOVRAUnitConvert::CheckInch(QStringLiteral("1 1/16"), IF));
  double In;
  EXPECT_TRUE(TOVRAUnitConvert::ConvertInchToMm(QStringLiteral("2.5"), In));
  EXPECT_NEAR(In, 63.5, 1e-12);
}

TEST(TOVRAUnitConvert, WeightsAreasAndTheCodes) {
  EXPECT_DOUBLE_EQ(TOVRAUnitConvert::ConvertKgToPound(0.45359237), 1);
  EXPECT_EQ(TOVRAUnitConvert::ConvertKgToPound(QStringLiteral("0.45359237")), QStringLiteral("1"));
  EXPECT_DOUBLE_EQ(TOVRAUnitConvert::ConvertM2ToSqFt(0.09290304), 1);
  EXPECT_DOUBLE_EQ(TOVRAUnitConvert::ConvertTToTon(0.90718474, tfShort), 1);
  EXPECT_DOUBLE_EQ(TOVRAUnitConvert::ConvertTToTon(1.0160469088, tfLong), 1);
  EXPECT_EQ(TOVRAUnitConvert::ConvertTToTon(1, 7), 0);
  const int Saved = BarStandardCode();
  SetBarStandardCode(4);
  EXPECT_TRUE(TOVRAUnitConvert::NeedConvert());
  EXPECT_TRUE(TOVRAUnitConvert::NeedBarNoConvert());
  SetBarStandardCode(6);
  EXPECT_FALSE(TOVRAUnitConvert::NeedConvert());
  EXPECT_TRUE(TOVRAUnitConvert::NeedBarNoConvert());
  SetBarStandardCode(1);
  EXPECT_FALSE(TOVRAUnitConvert::NeedBarNoConvert());
  SetBarStandardCode(Saved);
}
