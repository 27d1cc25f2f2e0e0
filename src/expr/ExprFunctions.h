#pragma once
// The built-in function nodes: 41 mathematical and 22 string functions, and the
// Chinese number texts used by CHSNUM and RMBNUM.

#include "ExprNodes.h"

enum TMF {
  mfTrunc, mfRound, mfAbs, mfExp, mfFrac, mfInt, mfLn, mfLog, mfSqr, mfSqrt, mfSin, mfCos, mfTan, mfArcTan,
  mfArcSin, mfArcCos, mfSinD, mfCosD, mfTanD, mfArcSinD, mfArcCosD, mfArcTanD, mfPi, mfNow, mfPower, mfSum,
  mfAverage, mfTop, mfTrail, mfCount, mfOrd, mfStrToInt, mfStrToFloat, mfMax, mfMin, mfCeil, mfFloor,
  mfFRound, mfDToR, mfRToD, mfIIF
};
constexpr int MFCount = 41;

enum TSF {
  sfUpper, sfLower, sfTrim, sfCopy, sfMid, sfPos, sfLength, sfFormatFloat, sfIntToStr, sfStr, sfFloatToStr,
  sfChr, sfReverse, sfChsNum, sfRmbNum, sfFormatDateTime, sfReplace, sfIf, sfAnsiToUtf8, sfUtf8ToAnsi,
  sfBase64Encode, sfBase64Decode
};
constexpr int SFCount = 22;

extern const char* const NMF[MFCount];  // "TRUNC", ...
extern const char* const NSF[SFCount];  // "UPPER", ...

// Parameters are checked when built ("Invalid parameter to NAME").
class TMathExpression : public TFunction {
public:
  TMathExpression(PParameterList AParameterList, TMF AOperator, bool AUseDegree,
                  const TStatisticalGetProc& AGetStatisticalProc);
  double AsFloat() override;
  qint64 AsInteger() override;
  TExprType ExprType() override;
  TMF Operator() const { return FOperator; }

private:
  double Statistical(double AValue);
  TMF FOperator;
  bool UseDegree;
};

class TStringExpression : public TFunction {
public:
  TStringExpression(PParameterList AParameterList, TSF AOperator);
  QString AsString() override;
  qint64 AsInteger() override;
  TExprType ExprType() override;

private:
  QString StringResult();
  TSF FOperator;
};

// The Chinese number and currency texts, with the program's character tables.
QString ChsNum(double AValue);
QString RmbNum(double AValue);
// Delphi-style date pictures (yyyy, mm, dd, hh, nn, ss, zzz, quoted text) of a
// date value counted in days from 1899-12-30.
QString FormatDateTime(const QString& AFormat, double ADateTime);
double NowAsDateTime();
