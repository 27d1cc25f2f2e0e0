#include "ClientDataSet.h"

#include <algorithm>

// ---------------------------------------------------------------------------
// Values

namespace {

bool IsNumeric(const QVariant& V) {
  switch (V.typeId()) {
    case QMetaType::LongLong:
    case QMetaType::Int:
    case QMetaType::Double:
    case QMetaType::Bool:
      return true;
    default:
      return false;
  }
}

}  // namespace

QVariant ConvertFieldValue(const QVariant& AValue, TFieldType AType) {
  if (AValue.isNull())
    return QVariant();
  const bool IsText = AValue.typeId() == QMetaType::QString;
  switch (AType) {
    case TFieldType::ftInteger:
      if (IsText) {
        const QString T = Trim(AValue.toString());
        if (T.isEmpty())
          return QVariant();
        return QVariant(StrToInt64(T));
      }
      if (AValue.typeId() == QMetaType::Double) {
        const double D = AValue.toDouble();
        if (D != static_cast<double>(static_cast<qint64>(D)))
          throw EConvertError(QStringLiteral("'%1' is not a valid integer value").arg(FloatToStr(D)));
        return QVariant(static_cast<qint64>(D));
      }
      return QVariant(AValue.toLongLong());
    case TFieldType::ftFloat:
      if (IsText) {
        const QString T = Trim(AValue.toString());
        if (T.isEmpty())
          return QVariant();
        return QVariant(StrToFloat(T));
      }
      return QVariant(AValue.toDouble());
    case TFieldType::ftBoolean:
      if (IsText) {
        const QString T = Trim(AValue.toString());
        if (SameText(T, QStringLiteral("True")) || T == QLatin1String("1"))
          return QVariant(true);
        if (SameText(T, QStringLiteral("False")) || T == QLatin1String("0"))
          return QVariant(false);
        if (T.isEmpty())
          return QVariant();
        throw EConvertError(QStringLiteral("'%1' is not a valid boolean value").arg(T));
      }
      return QVariant(AValue.toBool());
    case TFieldType::ftString:
      if (AValue.typeId() == QMetaType::Double)
        return QVariant(FloatToStr(AValue.toDouble()));
      return QVariant(AValue.toString());
    case TFieldType::ftBlob:
      if (AValue.typeId() == QMetaType::QByteArray)
        return AValue;
      return QVariant(AValue.toString().toUtf8());
  }
  return QVariant();
}

int CompareFieldValues(const QVariant& A, const QVariant& B) {
  if (A.isNull() || B.isNull())
    return (A.isNull() ? 0 : 1) - (B.isNull() ? 0 : 1);
  if (IsNumeric(A) && IsNumeric(B)) {
    if (A.typeId() != QMetaType::Double && B.typeId() != QMetaType::Double) {
      const qint64 X = A.toLongLong(), Y = B.toLongLong();
      return X < Y ? -1 : (X > Y ? 1 : 0);
    }
    const double X = A.toDouble(), Y = B.toDouble();
    return X < Y ? -1 : (X > Y ? 1 : 0);
  }
  if (A.typeId() == QMetaType::QByteArray && B.typeId() == QMetaType::QByteArray)
    return A.toByteArray().compare(B.toByteArray());
  return QString::compare(A.toString(), B.toString());
}

int TDataPacket::FieldIndex(const QString& AName) const {
  for (int I = 0; I < Fields.size(); ++I)
    if (SameText(Fields[I].Name, AName))
      return I;
  return -1;
}

TPacketRow& TDataPacket::AddRow(QVector<QVariant> AValues) {
  AValues.resize(Fields.size());
  for (int I = 0; I < Fields.size(); ++I)
    AValues[I] = ConvertFieldValue(AValues[I], Fields[I].DataType);
  Rows.push_back(TPacketRow{TUpdateStatus::usUnmodified, std::move(AValues), {}});
  return Rows.back();
}

QVariant TDataPacket::Value(int ARow, const QString& AField) const {
  const int F = FieldIndex(AField);
  if (F < 0 || ARow < 0 || ARow >= Rows.size())
    return QVariant();
  return Rows[ARow].Values.value(F);
}

// ---------------------------------------------------------------------------
// Fields

const QString& TField::FieldName() const { return FDataSet->FFields[FIndex].Name; }
TFieldType TField::DataType() const { return FDataSet->FFields[FIndex].DataType; }
QVariant TField::Value() const { return FDataSet->GetValue(FIndex); }

QString TField::AsString() const {
  const QVariant V = Value();
  if (V.isNull())
    return QString();
  switch (DataType()) {
    case TFieldType::ftFloat:
      return FloatToStr(V.toDouble());
    case TFieldType::ftBoolean:
      return V.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case TFieldType::ftBlob:
      return QString::fromUtf8(V.toByteArray());
    default:
      return V.toString();
  }
}

qint64 TField::AsInteger() const {
  const QVariant V = Value();
  if (V.isNull())
    return 0;
  return ConvertFieldValue(DataType() == TFieldType::ftString ? QVariant(Trim(V.toString())) : V,
                           TFieldType::ftInteger)
      .toLongLong();
}

double TField::AsFloat() const {
  const QVariant V = Value();
  return V.isNull() ? 0.0 : ConvertFieldValue(V, TFieldType::ftFloat).toDouble();
}

bool TField::AsBoolean() const {
  const QVariant V = Value();
  return V.isNull() ? false : ConvertFieldValue(V, TFieldType::ftBoolean).toBool();
}

QByteArray TField::AsBytes() const {
  const QVariant V = Value();
  if (V.typeId() == QMetaType::QByteArray)
    return V.toByteArray();
  return V.isNull() ? QByteArray() : V.toString().toUtf8();
}

void TField::SetValue(const QVariant& AValue) const {
  FDataSet->PutValue(FIndex, ConvertFieldValue(AValue, DataType()));
}

void TField::SetAsString(const QString& AText) const {
  if (DataType() == TFieldType::ftString) {
    FDataSet->PutValue(FIndex, QVariant(AText));
    return;
  }
  SetValue(QVariant(AText));
}

// ---------------------------------------------------------------------------
// Records and the change log

struct TClientDataSet::TRecord {
  QVector<QVariant> Values;
  QVector<QVariant> Original;  // as read; empty for inserted rows
  TUpdateStatus Status = TUpdateStatus::usUnmodified;
  bool Removed = false;        // deleted (an inserted row deleted again leaves no trace)
};

struct TClientDataSet::TLogEntry {
  int RecIndex;
  bool Created;     // the entry appended the record
  TRecord Before;   // the record before the change
};

// ---------------------------------------------------------------------------
// Filters: a small expression tree over field indexes and literals

struct TDataSetFilter {
  enum TKind { fkAnd, fkOr, fkNot, fkCompare, fkIsNull, fkNotNull } Kind = fkCompare;
  QString Op;
  std::shared_ptr<const TDataSetFilter> Left, Right;
  int LeftField = -1, RightField = -1;  // -1: the literal below
  QVariant LeftValue, RightValue;

  bool Eval(const QVector<QVariant>& ARow) const {
    switch (Kind) {
      case fkAnd:
        return Left->Eval(ARow) && Right->Eval(ARow);
      case fkOr:
        return Left->Eval(ARow) || Right->Eval(ARow);
      case fkNot:
        return !Left->Eval(ARow);
      case fkIsNull:
        return ARow.value(LeftField).isNull();
      case fkNotNull:
        return !ARow.value(LeftField).isNull();
      case fkCompare:
        break;
    }
    const QVariant A = LeftField >= 0 ? ARow.value(LeftField) : LeftValue;
    const QVariant B = RightField >= 0 ? ARow.value(RightField) : RightValue;
    if (A.isNull() || B.isNull())
      return false;
    int C;
    if (IsNumeric(A) != IsNumeric(B)) {
      // a text column against a number literal (or the reverse) compares as numbers when it can
      bool Ok1 = false, Ok2 = false;
      const double X = A.toString().trimmed().toDouble(&Ok1), Y = B.toString().trimmed().toDouble(&Ok2);
      C = (Ok1 && Ok2) ? (X < Y ? -1 : (X > Y ? 1 : 0)) : QString::compare(A.toString(), B.toString());
    } else {
      C = CompareFieldValues(A, B);
    }
    if (Op == u"=") return C == 0;
    if (Op == u"<>") return C != 0;
    if (Op == u"<") return C < 0;
    if (Op == u">") return C > 0;
    if (Op == u"<=") return C <= 0;
    return C >= 0;
  }
};

namespace {

struct TFilterToken {
  enum TType { ttEnd, ttName, ttNumber, ttString, ttOp, ttLParen, ttRParen } Type;
  QString Text;
};

class TFilterParser {
public:
  TFilterParser(const QString& AText, const QVector<TFieldDef>& AFields) : FText(AText), FFields(AFields) {}

  std::shared_ptr<const TDataSetFilter> Parse() {
    Tokenize();
    auto Result = ParseOr();
    if (Peek().Type != TFilterToken::ttEnd)
      Fail(QStringLiteral("unexpected \"%1\"").arg(Peek().Text));
    return Result;
  }

private:
  using TNode = std::shared_ptr<TDataSetFilter>;

  [[noreturn]] void Fail(const QString& AWhy) const {
    throw EDatabaseError(QStringLiteral("Filter \"%1\": %2").arg(FText, AWhy));
  }

  const TFilterToken& Peek() const { return FTokens[FPos]; }
  TFilterToken Take() { return FTokens[FPos < FTokens.size() - 1 ? FPos++ : FPos]; }
  bool IsWord(const TFilterToken& T, const char* AWord) const {
    return T.Type == TFilterToken::ttName && SameText(T.Text, QLatin1String(AWord));
  }

  int FieldOf(const QString& AName) const {
    for (int I = 0; I < FFields.size(); ++I)
      if (SameText(FFields[I].Name, AName))
        return I;
    Fail(QStringLiteral("field '%1' not found").arg(AName));
  }

  TNode Binary(TDataSetFilter::TKind AKind, TNode L, TNode R) {
    auto N = std::make_shared<TDataSetFilter>();
    N->Kind = AKind;
    N->Left = std::move(L);
    N->Right = std::move(R);
    return N;
  }

  TNode ParseOr() {
    TNode L = ParseAnd();
    while (IsWord(Peek(), "or")) {
      Take();
      L = Binary(TDataSetFilter::fkOr, L, ParseAnd());
    }
    return L;
  }

  TNode ParseAnd() {
    TNode L = ParseNot();
    while (IsWord(Peek(), "and")) {
      Take();
      L = Binary(TDataSetFilter::fkAnd, L, ParseNot());
    }
    return L;
  }

  TNode ParseNot() {
    if (IsWord(Peek(), "not")) {
      Take();
      return Binary(TDataSetFilter::fkNot, ParseNot(), nullptr);
    }
    if (Peek().Type == TFilterToken::ttLParen) {
      Take();
      TNode N = ParseOr();
      if (Take().Type != TFilterToken::ttRParen)
        Fail(QStringLiteral("\")\" expected"));
      return N;
    }
    return ParseComparison();
  }

  // An operand: a field name, a number, a 'string' or NULL.
  void Operand(int& AField, QVariant& AValue) {
    const TFilterToken T = Take();
    AField = -1;
    switch (T.Type) {
      case TFilterToken::ttName:
        if (SameText(T.Text, QStringLiteral("null")))
          AValue = QVariant();
        else
          AField = FieldOf(T.Text);
        return;
      case TFilterToken::ttNumber: {
        qint64 I;
        double D;
        if (TryStrToInt64(T.Text, I))
          AValue = QVariant(I);
        else if (TryStrToFloat(T.Text, D))
          AValue = QVariant(D);
        else
          Fail(QStringLiteral("\"%1\" is not a number").arg(T.Text));
        return;
      }
      case TFilterToken::ttString:
        AValue = QVariant(T.Text);
        return;
      default:
        Fail(T.Type == TFilterToken::ttEnd ? QStringLiteral("operand expected at the end")
                                           : QStringLiteral("operand expected before \"%1\"").arg(T.Text));
    }
  }

  TNode ParseComparison() {
    auto N = std::make_shared<TDataSetFilter>();
    Operand(N->LeftField, N->LeftValue);
    if (IsWord(Peek(), "is")) {
      Take();
      bool Negated = false;
      if (IsWord(Peek(), "not")) {
        Take();
        Negated = true;
      }
      if (!IsWord(Take(), "null"))
        Fail(QStringLiteral("NULL expected after IS"));
      if (N->LeftField < 0)
        Fail(QStringLiteral("a field name must stand before IS"));
      N->Kind = Negated ? TDataSetFilter::fkNotNull : TDataSetFilter::fkIsNull;
      return N;
    }
    const TFilterToken Op = Take();
    if (Op.Type != TFilterToken::ttOp)
      Fail(QStringLiteral("comparison expected"));
    N->Op = Op.Text;
    Operand(N->RightField, N->RightValue);
    return N;
  }

  void Tokenize() {
    int I = 0;
    const int N = FText.size();
    while (I < N) {
      const QChar C = FText[I];
      if (C.isSpace()) {
        ++I;
      } else if (C == u'(' || C == u')') {
        FTokens.push_back({C == u'(' ? TFilterToken::ttLParen : TFilterToken::ttRParen, QString(C)});
        ++I;
      } else if (C == u'\'') {
        QString S;
        ++I;
        for (;;) {
          if (I >= N)
            Fail(QStringLiteral("unterminated string"));
          if (FText[I] == u'\'') {
            if (I + 1 < N && FText[I + 1] == u'\'') {
              S += u'\'';
              I += 2;
              continue;
            }
            ++I;
            break;
          }
          S += FText[I++];
        }
        FTokens.push_back({TFilterToken::ttString, S});
      } else if (C == u'[') {
        const int End = FText.indexOf(u']', I);
        if (End < 0)
          Fail(QStringLiteral("unterminated field name"));
        FTokens.push_back({TFilterToken::ttName, FText.mid(I + 1, End - I - 1)});
        I = End + 1;
      } else if (C.isDigit() || (C == u'-' && I + 1 < N && FText[I + 1].isDigit())) {
        int J = I + 1;
        while (J < N && (FText[J].isDigit() || FText[J] == u'.'))
          ++J;
        FTokens.push_back({TFilterToken::ttNumber, FText.mid(I, J - I)});
        I = J;
      } else if (C.isLetter() || C == u'_') {
        int J = I + 1;
        while (J < N && (FText[J].isLetterOrNumber() || FText[J] == u'_'))
          ++J;
        FTokens.push_back({TFilterToken::ttName, FText.mid(I, J - I)});
        I = J;
      } else if (C == u'=' || C == u'<' || C == u'>') {
        QString Op(C);
        if (C != u'=' && I + 1 < N && (FText[I + 1] == u'=' || (C == u'<' && FText[I + 1] == u'>')))
          Op += FText[++I];
        FTokens.push_back({TFilterToken::ttOp, Op});
        ++I;
      } else {
        Fail(QStringLiteral("unexpected character '%1'").arg(C));
      }
    }
    FTokens.push_back({TFilterToken::ttEnd, QString()});
  }

  QString FText;
  const QVector<TFieldDef>& FFields;
  std::vector<TFilterToken> FTokens;
  size_t FPos = 0;
};

}  // namespace

// ---------------------------------------------------------------------------
// The dataset

TClientDataSet::TClientDataSet() = default;
TClientDataSet::~TClientDataSet() = default;

void TClientDataSet::SetData(const TDataPacket& AData) {
  FFields = AData.Fields;
  FRecords.clear();
  FLog.clear();
  FRecords.reserve(AData.Rows.size());
  for (const TPacketRow& Row : AData.Rows) {
    if (Row.Status == TUpdateStatus::usDeleted)
      continue;
    TRecord R;
    R.Values = Row.Values;
    R.Values.resize(FFields.size());
    for (int I = 0; I < FFields.size(); ++I)
      R.Values[I] = ConvertFieldValue(R.Values[I], FFields[I].DataType);
    FRecords.push_back(std::move(R));
  }
  FBuffer.clear();
  // A filter or index over fields that no longer exist is dropped with them.
  try {
    FIndexFields = ParseFieldList(FIndexFieldNames);
  } catch (const EDatabaseError&) {
    FIndexFieldNames.clear();
    FIndexFields.clear();
  }
  try {
    FFilterTree = Trim(FFilter).isEmpty() ? nullptr : TFilterParser(FFilter, FFields).Parse();
  } catch (const EDatabaseError&) {
    FFilterTree = nullptr;
    FFiltered = false;
  }
  FState = TDataSetState::dsBrowse;
  InvalidateView();
  First();
}

TDataPacket TClientDataSet::Data() const {
  TDataPacket P;
  P.Fields = FFields;
  for (const TRecord& R : FRecords)
    if (!R.Removed)
      P.Rows.push_back(TPacketRow{R.Status, R.Values, R.Original});
  return P;
}

TDataPacket TClientDataSet::Delta() const {
  TDataPacket P;
  if (ChangeCount() == 0)
    return P;
  P.Fields = FFields;
  for (const TRecord& R : FRecords) {
    if (R.Status == TUpdateStatus::usUnmodified)
      continue;
    if (R.Status == TUpdateStatus::usInserted && R.Removed)
      continue;
    if (R.Status == TUpdateStatus::usDeleted)
      P.Rows.push_back(TPacketRow{R.Status, R.Original, R.Original});
    else
      P.Rows.push_back(TPacketRow{R.Status, R.Values, R.Original});
  }
  return P;
}

int TClientDataSet::ChangeCount() const {
  int N = 0;
  for (const TRecord& R : FRecords)
    if (R.Status != TUpdateStatus::usUnmodified && !(R.Status == TUpdateStatus::usInserted && R.Removed))
      ++N;
  return N;
}

int TClientDataSet::SavePoint() const { return static_cast<int>(FLog.size()); }

void TClientDataSet::SetSavePoint(int AValue) {
  if (AValue < 0 || AValue > SavePoint())
    throw EDatabaseError(QStringLiteral("Invalid save point %1 (the change log holds %2 entries)")
                             .arg(AValue)
                             .arg(SavePoint()));
  if (FState == TDataSetState::dsEdit || FState == TDataSetState::dsInsert)
    Cancel();
  while (static_cast<int>(FLog.size()) > AValue) {
    TLogEntry E = std::move(FLog.back());
    FLog.pop_back();
    if (E.Created)
      FRecords.erase(FRecords.begin() + E.RecIndex);  // entries undo last-in first-out
    else
      FRecords[E.RecIndex] = std::move(E.Before);
  }
  InvalidateView();
  if (Active()) {
    if (FCurrent >= static_cast<int>(FRecords.size()) || FCurrent < 0 || FRecords[FCurrent].Removed)
      First();
    else
      SetCurrentToRecord(FCurrent);
  }
}

void TClientDataSet::MergeChangeLog() {
  CheckBrowseMode();
  std::vector<TRecord> Kept;
  Kept.reserve(FRecords.size());
  int NewCurrent = -1;
  for (int I = 0; I < static_cast<int>(FRecords.size()); ++I) {
    TRecord& R = FRecords[I];
    if (R.Removed)
      continue;
    if (I == FCurrent)
      NewCurrent = static_cast<int>(Kept.size());
    R.Status = TUpdateStatus::usUnmodified;
    R.Original.clear();
    Kept.push_back(std::move(R));
  }
  FRecords = std::move(Kept);
  FLog.clear();
  InvalidateView();
  if (NewCurrent >= 0)
    SetCurrentToRecord(NewCurrent);
  else if (Active())
    First();
}

void TClientDataSet::Open() {
  if (Active())
    return;
  if (FFields.isEmpty())
    throw EDatabaseError(QStringLiteral("Missing data packet: the dataset has no fields"));
  FState = TDataSetState::dsBrowse;
  InvalidateView();
  First();
}

void TClientDataSet::Close() {
  if (FState == TDataSetState::dsEdit || FState == TDataSetState::dsInsert)
    Cancel();
  FState = TDataSetState::dsInactive;
  FCurrent = -1;
  FEof = FBof = true;
}

int TClientDataSet::FieldIndex(const QString& AName) const {
  for (int I = 0; I < FFields.size(); ++I)
    if (SameText(FFields[I].Name, AName))
      return I;
  return -1;
}

TField TClientDataSet::FieldByName(const QString& AName) {
  const int I = FieldIndex(AName);
  if (I < 0)
    throw EDatabaseError(QStringLiteral("Field '%1' not found").arg(AName));
  return TField(this, I);
}

void TClientDataSet::CheckActive() const {
  if (!Active())
    throw EDatabaseError(QStringLiteral("Cannot perform this operation on a closed dataset"));
}

void TClientDataSet::CheckBrowseMode() {
  CheckActive();
  if (FState == TDataSetState::dsEdit || FState == TDataSetState::dsInsert)
    Post();
}

void TClientDataSet::InvalidateView() { FViewValid = false; }

void TClientDataSet::EnsureView() const {
  if (FViewValid)
    return;
  FView.clear();
  for (int I = 0; I < static_cast<int>(FRecords.size()); ++I)
    if (!FRecords[I].Removed && (!FFiltered || !FFilterTree || FFilterTree->Eval(FRecords[I].Values)))
      FView.push_back(I);
  if (!FIndexFields.isEmpty())
    std::stable_sort(FView.begin(), FView.end(), [this](int A, int B) {
      for (int F : FIndexFields) {
        const int C = CompareFieldValues(FRecords[A].Values[F], FRecords[B].Values[F]);
        if (C != 0)
          return C < 0;
      }
      return false;
    });
  FViewValid = true;
}

void TClientDataSet::SetCurrentToRecord(int ARecIndex) {
  FCurrent = ARecIndex;
  if (ViewPos() < 0) {
    // the row left the view (filter)
    First();
    return;
  }
  FEof = FBof = false;
}

QVariant TClientDataSet::GetValue(int AIndex) const {
  if (AIndex < 0 || AIndex >= FFields.size())
    throw EDatabaseError(QStringLiteral("Field index %1 out of range").arg(AIndex));
  if (FState == TDataSetState::dsEdit || FState == TDataSetState::dsInsert)
    return FBuffer[AIndex];
  if (FCurrent < 0 || FCurrent >= static_cast<int>(FRecords.size()))
    return QVariant();
  return FRecords[FCurrent].Values[AIndex];
}

void TClientDataSet::PutValue(int AIndex, const QVariant& AValue) {
  if (FState != TDataSetState::dsEdit && FState != TDataSetState::dsInsert)
    throw EDatabaseError(QStringLiteral("Dataset not in edit or insert mode"));
  FBuffer[AIndex] = AValue;
}

void TClientDataSet::First() {
  CheckBrowseMode();
  EnsureView();
  FCurrent = FView.empty() ? -1 : FView.front();
  FEof = FBof = FView.empty();
}

void TClientDataSet::Last() {
  CheckBrowseMode();
  EnsureView();
  FCurrent = FView.empty() ? -1 : FView.back();
  FEof = FBof = FView.empty();
}

int TClientDataSet::ViewPos() const {
  EnsureView();
  if (FPos >= 0 && FPos < static_cast<int>(FView.size()) && FView[static_cast<size_t>(FPos)] == FCurrent)
    return FPos;
  const auto It = std::find(FView.begin(), FView.end(), FCurrent);
  FPos = It == FView.end() ? -1 : static_cast<int>(It - FView.begin());
  return FPos;
}

void TClientDataSet::Next() {
  CheckBrowseMode();
  const int P = ViewPos();
  if (P < 0 || P + 1 >= static_cast<int>(FView.size())) {
    FEof = true;
    return;
  }
  FPos = P + 1;
  FCurrent = FView[static_cast<size_t>(FPos)];
  FBof = false;
}

void TClientDataSet::Prior() {
  CheckBrowseMode();
  const int P = ViewPos();
  if (P <= 0) {
    FBof = true;
    return;
  }
  FPos = P - 1;
  FCurrent = FView[static_cast<size_t>(FPos)];
  FEof = false;
}

bool TClientDataSet::IsEmpty() const { return RecordCount() == 0; }

int TClientDataSet::RecordCount() const {
  if (!Active())
    return 0;
  EnsureView();
  return static_cast<int>(FView.size());
}

int TClientDataSet::RecNo() const {
  if (!Active())
    return 0;
  return ViewPos() + 1;
}

void TClientDataSet::Log(int ARecIndex, bool ACreated) {
  FLog.push_back(TLogEntry{ARecIndex, ACreated, ACreated ? TRecord{} : FRecords[ARecIndex]});
}

void TClientDataSet::Append() {
  CheckBrowseMode();
  FBuffer = QVector<QVariant>(FFields.size());
  FState = TDataSetState::dsInsert;
}

void TClientDataSet::Edit() {
  CheckActive();
  if (FState == TDataSetState::dsEdit || FState == TDataSetState::dsInsert)
    return;
  if (FCurrent < 0 || IsEmpty()) {
    Append();  // editing an empty dataset inserts a row
    return;
  }
  FBuffer = FRecords[FCurrent].Values;
  FState = TDataSetState::dsEdit;
}

void TClientDataSet::Post() {
  CheckActive();
  if (FState == TDataSetState::dsInsert) {
    TRecord R;
    R.Values = std::move(FBuffer);
    R.Status = TUpdateStatus::usInserted;
    FRecords.push_back(std::move(R));
    const int Index = static_cast<int>(FRecords.size()) - 1;
    Log(Index, true);
    FState = TDataSetState::dsBrowse;
    InvalidateView();
    SetCurrentToRecord(Index);
  } else if (FState == TDataSetState::dsEdit) {
    TRecord& R = FRecords[FCurrent];
    if (R.Values != FBuffer) {
      Log(FCurrent, false);
      if (R.Status == TUpdateStatus::usUnmodified) {
        R.Original = R.Values;
        R.Status = TUpdateStatus::usModified;
      }
      // the view changes only when a field it sorts or filters on does
      bool Moves = FFiltered && FFilterTree;
      for (int F : FIndexFields)
        Moves = Moves || CompareFieldValues(R.Values[F], FBuffer[F]) != 0 ||
                R.Values[F].isNull() != FBuffer[F].isNull();
      R.Values = std::move(FBuffer);
      if (Moves)
        InvalidateView();
    }
    FBuffer.clear();
    FState = TDataSetState::dsBrowse;
    SetCurrentToRecord(FCurrent);
  }
}

void TClientDataSet::Cancel() {
  if (FState == TDataSetState::dsEdit || FState == TDataSetState::dsInsert) {
    FBuffer.clear();
    FState = TDataSetState::dsBrowse;
  }
}

void TClientDataSet::Delete() {
  CheckActive();
  if (FState == TDataSetState::dsInsert) {
    Cancel();
    return;
  }
  Cancel();
  if (FCurrent < 0 || IsEmpty())
    throw EDatabaseError(QStringLiteral("Cannot perform this operation on an empty dataset"));
  EnsureView();
  const auto It = std::find(FView.begin(), FView.end(), FCurrent);
  const int Pos = It == FView.end() ? 0 : static_cast<int>(It - FView.begin());
  Log(FCurrent, false);
  TRecord& R = FRecords[FCurrent];
  R.Removed = true;
  if (R.Status == TUpdateStatus::usModified)
    R.Values = R.Original;
  if (R.Status != TUpdateStatus::usInserted) {
    if (R.Status == TUpdateStatus::usUnmodified)
      R.Original = R.Values;
    R.Status = TUpdateStatus::usDeleted;
  }
  InvalidateView();
  EnsureView();
  // the row after the deleted one becomes current, or the new last one
  if (FView.empty()) {
    FCurrent = -1;
    FEof = FBof = true;
  } else {
    FCurrent = FView[std::min<size_t>(Pos, FView.size() - 1)];
    FEof = FBof = false;
  }
}

QVector<int> TClientDataSet::ParseFieldList(const QString& ANames) const {
  QVector<int> Result;
  for (const QString& Part : ANames.split(u';', Qt::SkipEmptyParts)) {
    const QString Name = Trim(Part);
    if (Name.isEmpty())
      continue;
    const int I = FieldIndex(Name);
    if (I < 0)
      throw EDatabaseError(QStringLiteral("Field '%1' not found").arg(Name));
    Result.push_back(I);
  }
  return Result;
}

void TClientDataSet::SetIndexFieldNames(const QString& ANames) {
  if (Active())
    CheckBrowseMode();
  if (ANames == FIndexFieldNames)
    return;  // the same index (kept in step with the fields by SetData): the view stays
  FIndexFields = FFields.isEmpty() ? QVector<int>() : ParseFieldList(ANames);
  FIndexFieldNames = ANames;
  InvalidateView();
}

bool TClientDataSet::FindKey(const QVector<QVariant>& AKeyValues) {
  CheckBrowseMode();
  if (AKeyValues.size() > FIndexFields.size())
    throw EDatabaseError(QStringLiteral("FindKey: %1 key values for an index of %2 fields")
                             .arg(AKeyValues.size())
                             .arg(FIndexFields.size()));
  QVector<QVariant> Keys;
  for (int I = 0; I < AKeyValues.size(); ++I)
    Keys.push_back(ConvertFieldValue(AKeyValues[I], FFields[FIndexFields[I]].DataType));
  EnsureView();
  // the view is sorted on the index: binary search for the first row not below the key
  const auto Less = [&](int ARec, const QVector<QVariant>& AKey) {
    for (int I = 0; I < AKey.size(); ++I) {
      const int C = CompareFieldValues(FRecords[ARec].Values[FIndexFields[I]], AKey[I]);
      if (C != 0)
        return C < 0;
    }
    return false;
  };
  const auto It = std::lower_bound(FView.begin(), FView.end(), Keys, Less);
  if (It == FView.end())
    return false;
  for (int I = 0; I < Keys.size(); ++I)
    if (CompareFieldValues(FRecords[*It].Values[FIndexFields[I]], Keys[I]) != 0)
      return false;
  FCurrent = *It;
  FPos = static_cast<int>(It - FView.begin());
  FEof = FBof = false;
  return true;
}

bool TClientDataSet::Locate(const QString& AFieldNames, const QVector<QVariant>& AValues) {
  CheckBrowseMode();
  const QVector<int> Fields = ParseFieldList(AFieldNames);
  if (Fields.size() != AValues.size())
    throw EDatabaseError(QStringLiteral("Locate: %1 values for %2 fields").arg(AValues.size()).arg(Fields.size()));
  QVector<QVariant> Keys;
  for (int I = 0; I < Fields.size(); ++I)
    Keys.push_back(ConvertFieldValue(AValues[I], FFields[Fields[I]].DataType));
  EnsureView();
  for (int Rec : FView) {
    bool Match = true;
    for (int I = 0; I < Fields.size() && Match; ++I)
      Match = CompareFieldValues(FRecords[Rec].Values[Fields[I]], Keys[I]) == 0;
    if (Match) {
      FCurrent = Rec;
      FEof = FBof = false;
      return true;
    }
  }
  return false;
}

void TClientDataSet::SetFilter(const QString& AFilter) {
  if (Active())
    CheckBrowseMode();
  FFilterTree = Trim(AFilter).isEmpty() ? nullptr : TFilterParser(AFilter, FFields).Parse();
  FFilter = AFilter;
  if (FFiltered) {
    InvalidateView();
    if (Active())
      First();
  }
}

void TClientDataSet::SetFiltered(bool AValue) {
  if (Active())
    CheckBrowseMode();
  if (FFiltered == AValue)
    return;
  FFiltered = AValue;
  InvalidateView();
  if (Active())
    First();
}
