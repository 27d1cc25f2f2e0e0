#include "ExprTestUtils.h"

TEST(TMathExpression, Functions) {
  CheckCases({
      {"TRUNC(-2.7)", "Integer", "-2"},
      {"ROUND(2.5)", "Integer", "2"},  // halves go to the even neighbour
      {"ROUND(3.5)", "Integer", "4"},
      {"ROUND(-2.6)", "Integer", "-3"},
      {"ABS(-3)", "Float", "3"},
      {"FRAC(2.75)", "Float", "0.75"},
      {"INT(-2.5)", "Float", "-2"},
      {"LN(EXP(1))", "Float", "1"},
      {"LOG(1000)", "Float", "3"},
      {"SQR(3)", "Float", "9"},
      {"SQRT(16)", "Float", "4"},
      {"COS(0)", "Float", "1"},
      {"SIND(90)", "Float", "1"},
      {"COSD(180)", "Float", "-1"},
      {"ARCSIND(1)", "Float", "90"},
      {"ARCCOS(1)", "Float", "0"},
      {"ARCTAND(1)", "Float", "45"},
      {"PI", "Float", "3.14159265358979"},
      {"PI()", "Float", "3.14159265358979"},
      {"POWER(2, 3)", "Float", "9"},  // exponent first, then the base
      {"ORD('A')", "Integer", "65"},
      {"STRTOINT('42')", "Integer", "42"},
      {"STRTOFLOAT('2.5')", "Float", "2.5"},
      {"MAX(1, 5, 3)", "Float", "5"},
      {"MIN(4, -1)", "Float", "-1"},
      {"CEIL(1.2)", "Float", "2"},
      {"FLOOR(-1.2)", "Float", "-2"},
      {"FROUND(2.345, 2)", "Float", "2.35"},
      {"FROUND(1.005, 2)", "Float", "1.01"},  // 1e-09 is added first
      {"FROUND(2.5, 0)", "Float", "3"},
      {"DTOR(180)", "Float", "3.14159265358979"},
      {"RTOD(PI)", "Float", "180"},
      {"IIF(1 > 2, 1, 2)", "Float", "2"},
      {"STRING(12) + 'x'", "String", "12x"},
      {"FLOAT(2)", "Float", "2"},
  });
  CheckCases({{"SIN(90)", "Float", "1"}, {"ARCTAN(1)", "Float", "45"}, {"SIND(90)", "Float", "1"}}, true);
}

TEST(TMathExpression, ParameterChecks) {
  for (const char* Bad : {"SQRT('a')", "ABS()", "ABS(1, 2)", "POWER(1)", "MAX()", "MAX(1, 'a')", "IIF(1, 2, 3)",
                          "FROUND(1.5, 'a')", "COUNT(1, 2)", "ARCSIN(2)", "ARCCOSD(-1.5)"}) {
    SCOPED_TRACE(Bad);
    QString Name = QString::fromLatin1(Bad);
    Name.truncate(Name.indexOf(u'('));
    EXPECT_EQ(Eval(QString::fromLatin1(Bad)).Error, QStringLiteral("Invalid parameter to %1").arg(Name));
  }
  EXPECT_EQ(Eval(QStringLiteral("STRTOINT('x')")).Error, QStringLiteral("'x' is not a valid integer value"));
  EXPECT_EQ(Eval(QStringLiteral("LN(0)")).Error, QStringLiteral("Invalid floating point operation"));
}

TEST(TMathExpression, StatisticalFunctionsUseTheCallersSlots) {
  TStatisticalData Sum, Avg, Cnt, Top, Trail;
  TExpr E;
  E.SetGetStatisticalProc([&](const TMathExpression& F, TStatisticalData*& AData) {
    switch (F.Operator()) {
      case mfSum: AData = &Sum; break;
      case mfAverage: AData = &Avg; break;
      case mfCount: AData = &Cnt; break;
      case mfTop: AData = &Top; break;
      case mfTrail: AData = &Trail; break;
      default: break;
    }
  });
  const double Values[] = {4, 10, 1};
  QString Last[5];
  for (const double V : Values) {
    for (TStatisticalData* D : {&Sum, &Avg, &Cnt, &Top, &Trail}) D->ResetCounter();
    const QString X = QString::number(V);
    const char* Names[] = {"SUM", "AVERAGE", "COUNT", "TOP", "TRAIL"};
    for (int I = 0; I < 5; ++I) {
      const QString T = QStringLiteral("%1(%2)").arg(QLatin1String(Names[I]), X);
      Last[I] = Eval(T, false, &E).Value;
    }
  }
  EXPECT_EQ(Last[0], QStringLiteral("15"));
  EXPECT_EQ(Last[1], QStringLiteral("5"));
  EXPECT_EQ(Last[2], QStringLiteral("3"));
  EXPECT_EQ(Last[3], QStringLiteral("10"));
  EXPECT_EQ(Last[4], QStringLiteral("1"));
  // two calls in one pass use two slots
  Sum.ResetData();
  EXPECT_EQ(Eval(QStringLiteral("SUM(1) + SUM(2)"), false, &E).Value, QStringLiteral("3"));
  EXPECT_EQ(Sum.FDataList.size(), 2u);
  // without a proc the functions give 0
  EXPECT_EQ(Eval(QStringLiteral("SUM(5)")).Value, QStringLiteral("0"));
}

TEST(TStringExpression, Functions) {
  CheckCases({
      {"UPPER('abc')", "String", "ABC"},
      {"LOWER('ABC')", "String", "abc"},
      {"TRIM('  a  ')", "String", "a"},
      {"COPY('abcdef', 2, 3)", "String", "bcd"},
      {"MID('abc', 0, 2)", "String", "ab"},
      {"COPY('abc', 5, 2)", "String", ""},
      {"COPY('abc', 2, -1)", "String", ""},
      {"POS('c', 'abc')", "Integer", "3"},
      {"POS('z', 'abc')", "Integer", "0"},
      {"LENGTH('钢筋')", "Integer", "2"},
      {"LENGTH('ab') + 1", "Integer", "3"},
      {"FORMATFLOAT('0.00', 3.14159)", "String", "3.14"},
      {"INTTOSTR(42)", "String", "42"},
      {"STR(1.5)", "String", "1.5"},
      {"FLOATTOSTR(0.1)", "String", "0.1"},
      {"CHR(65)", "String", "A"},
      {"REVERSE('abc')", "String", "cba"},
      {"REPLACE('aXbx', 'x', '-')", "String", "a-b-"},
      {"BASE64ENCODE('abc')", "String", "YWJj"},
      {"BASE64DECODE('YWJj')", "String", "abc"},
      {"BASE64DECODE(BASE64ENCODE('钢筋'))", "String", "钢筋"},
      {"BASE64ENCODE('中')", "String", "1tA="},  // the 8-bit form is GBK
      {"ANSITOUTF8('abc')", "String", "abc"},
      {"FORMATDATETIME('yyyy-mm-dd hh:nn:ss', 45000.5)", "String", "2023-03-15 12:00:00"},
      {"FORMATDATETIME('d/m/yy \"at\" h:mm', 45000.25)", "String", "15/3/23 at 6:00"},
  });
  for (const char* Bad : {"COPY('abc', 1)", "COPY('abc', 'a', 1)", "POS('a')", "CHR('a')", "CHSNUM('a')",
                          "FORMATFLOAT('0')", "REPLACE('a', 'b')", "UPPER()"}) {
    SCOPED_TRACE(Bad);
    QString Name = QString::fromLatin1(Bad);
    Name.truncate(Name.indexOf(u'('));
    EXPECT_EQ(Eval(QString::fromLatin1(Bad)).Error, QStringLiteral("Invalid parameter to %1").arg(Name));
  }
}

// The program's character tables give these texts; they are kept as they are.
TEST(TStringExpression, ChsNumKeepsTheProgramsTable) {
  const struct {
    double Value;
    const char* Text;
  } Cases[] = {{0, "零"},
               {12, "二三十四五"},
               {10, "二三十"},
               {5, "零"},  // digits 5 and up give nothing
               {101, "二三百零二三"},
               {10000, "二三万"},
               {10001, "二三万零二三"},
               {100000, "二三十万"},
               {100010000, "二三亿零二三万"},
               {1.5, "二三点"},
               {-3, "负六七"},
               {0.4, "点八九"}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Value);
    EXPECT_EQ(ChsNum(C.Value), QString::fromUtf8(C.Text));
  }
  EXPECT_EQ(Eval(QStringLiteral("CHSNUM(12)")).Value, QStringLiteral("二三十四五"));
}

TEST(TStringExpression, RmbNumKeepsTheProgramsTable) {
  const struct {
    double Value;
    const char* Text;
  } Cases[] = {{0, "零元整"},
               {0.00001, "零元整"},
               {1, "壹元万整"},
               {10, "壹拾佰元万整"},
               {-2.5, "负贰元万伍"},
               {0.05, "伍分角"},
               {10001, "壹亿兆零壹元万整"}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Value);
    EXPECT_EQ(RmbNum(C.Value), QString::fromUtf8(C.Text));
  }
  EXPECT_EQ(Eval(QStringLiteral("RMBNUM(1e300)")).Error, QStringLiteral("Invalid parameter to RMBNUM"));
}
