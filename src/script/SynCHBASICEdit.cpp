#include "SynCHBASICEdit.h"

#include "Dialogs.h"
#include "SysUtils.h"

const char* const NTokenKind[9] = {"tkComment", "tkIdentifier", "tkKey",    "tkNull",   "tkSpace",
                                   "tkString",  "tkVariable",   "tkNumber", "tkUnknown"};

namespace {
bool IsIdentStart(QChar C) {
  const char16_t U = C.unicode();
  return (U >= u'a' && U <= u'z') || (U >= u'A' && U <= u'Z') || U == u'_';
}
int CharValue(QChar C) { return int(AsciiUpCase(C).unicode()) - 64; }
}  // namespace

const QStringList& TSynSampleSyn::ReservedWords() {
  static const QStringList Words = {
      QStringLiteral("if"),       QStringLiteral("else"),   QStringLiteral("endif"),     QStringLiteral("do"),
      QStringLiteral("loop"),     QStringLiteral("from"),   QStringLiteral("endfrom"),   QStringLiteral("mainend"),
      QStringLiteral("string"),   QStringLiteral("int"),    QStringLiteral("single"),    QStringLiteral("procedure"),
      QStringLiteral("exitdo"),   QStringLiteral("exitfrom"), QStringLiteral("and"),     QStringLiteral("or"),
      QStringLiteral("to"),       QStringLiteral("step"),   QStringLiteral("cd"),        QStringLiteral("jj"),
      QStringLiteral("zj"),       QStringLiteral("jb"),     QStringLiteral("cnt"),       QStringLiteral("djlx"),
      QStringLiteral("gjlx"),     QStringLiteral("ishoop"), QStringLiteral("dj"),        QStringLiteral("msgbox"),
      QStringLiteral("cancel")};
  return Words;
}

TSynSampleSyn::TSynSampleSyn() {
  const quint32 D = TSynHighlighterAttributes::ColorDefault;
  // Colours are 0x00BBGGRR of the red-green-blue values 008000, 0000FF, FF00FF, 800000, 800080.
  fCommentAttri = {QStringLiteral("Comment"), 0x008000, false, true, false};
  fIdentifierAttri = {QStringLiteral("Identifier"), D};
  fKeyAttri = {QStringLiteral("Reserved Word"), 0xFF0000, true, false, false};
  fSpaceAttri = {QStringLiteral("Space"), D};
  fStringAttri = {QStringLiteral("String"), 0xFF00FF};
  fNumberAttri = {QStringLiteral("Number"), 0x000080, true, false, false};
  fVariableAttri = {QStringLiteral("variable"), 0x800080, true, false, true};
  for (THandler& H : fIdentFuncTable) H = hDefault;
  CreateKey();
}

int TSynSampleSyn::KeyHash(const QString& AText, int AStart, int* AEnd) {
  int H = 0, I = AStart;
  while (I < AText.size() && IsIdentStart(AText[I])) H += CharValue(AText[I++]);
  if (AEnd) *AEnd = I;
  return H;
}

void TSynSampleSyn::CreateKey() {
  fkeyArray.clear();
  for (const QString& W : ReservedWords()) {
    const int H = KeyHash(W, 0);
    fkeyArray.push_back(H);
    fIdentFuncTable[H] = hKey;
  }
}

// Which handler a hash gets: params first, then reserved words, else the default.
void TSynSampleSyn::SetHandler(int AHash) {
  if (AHash < 0 || AHash >= IdentTableSize) return;
  THandler H = hDefault;
  for (const int K : fkeyArray)
    if (K == AHash) H = hKey;
  for (const int V : FVariableArray)
    if (V == AHash) H = hVariable;
  fIdentFuncTable[AHash] = H;
}

void TSynSampleSyn::AddKey(const QString& AKeyString, quintptr) {
  const int Hash = KeyHash(AKeyString, 0);
  for (size_t I = 0; I < FVariableArray.size(); ++I) {
    if (FVariableArray[I] != FreeEntry) continue;
    if (Hash >= IdentTableSize) {
      Dialogs().MessageBox(QStringLiteral("键值添加失败！"), QStringLiteral("提示"), mtWarning, mbOK);
      return;
    }
    FVariableArray[I] = Hash;
    fprogV[int(I)] = AKeyString;
    SetHandler(Hash);
    return;
  }
  // A new entry is not checked; a hash past the table simply gets no handler.
  FVariableArray.push_back(Hash);
  fprogV << AKeyString;
  SetHandler(Hash);
}

void TSynSampleSyn::DeleteKey(const QString& AKeyString) {
  const int I = int(fprogV.indexOf(AKeyString));
  if (I < 0 || FVariableArray[size_t(I)] == FreeEntry) return;
  const int Hash = FVariableArray[size_t(I)];
  FVariableArray[size_t(I)] = FreeEntry;
  fprogV[I].clear();
  SetHandler(Hash);
}

void TSynSampleSyn::ChangeKey(const QString& AOldString, const QString& ANewString) {
  DeleteKey(AOldString);
  AddKey(ANewString);
}

void TSynSampleSyn::ClearVarialKey() {
  std::vector<int> Hashes = FVariableArray;
  for (int& V : FVariableArray) V = FreeEntry;
  for (QString& S : fprogV) S.clear();
  for (const int H : Hashes) SetHandler(H);
}

bool TSynSampleSyn::SameWord(const QString& AWord, int AEnd) const {
  if (AWord.size() != AEnd - FTokenPos) return false;
  for (int I = 0; I < AWord.size(); ++I)
    if (CharValue(AWord[I]) != CharValue(FLine[FTokenPos + I])) return false;
  return true;
}

TtkTokenKind TSynSampleSyn::IdentKind(int AHash, int AEnd) {
  if (AHash < 0 || AHash >= IdentTableSize) return tkIdentifier;
  auto IsKey = [&] {
    for (int I = 0; I < int(fkeyArray.size()); ++I)
      if (fkeyArray[size_t(I)] == AHash && SameWord(ReservedWords()[I], AEnd)) return true;
    return false;
  };
  auto IsParam = [&] {
    for (int I = 0; I < int(FVariableArray.size()); ++I)
      if (FVariableArray[size_t(I)] == AHash && SameWord(fprogV[I], AEnd)) return true;
    return false;
  };
  switch (fIdentFuncTable[AHash]) {
    case hKey: return IsKey() ? tkKey : IsParam() ? tkVariable : tkIdentifier;
    case hVariable: return IsParam() ? tkVariable : IsKey() ? tkKey : tkIdentifier;
    default: return tkIdentifier;
  }
}

void TSynSampleSyn::SetLine(const QString& ALine, int ALineNumber) {
  FLine = ALine;
  FLineNumber = ALineNumber;
  Run = 0;
  FTokenPos = 0;
  Next();
}

void TSynSampleSyn::CommentProc(const QString& AClose, TRangeState ARange) {
  FTokenID = tkComment;
  const qsizetype E = FLine.indexOf(AClose, Run);
  if (E < 0) {
    Run = int(FLine.size());
    FRange = ARange;
  } else {
    Run = int(E + AClose.size());
    FRange = rsUnKnown;
  }
}

void TSynSampleSyn::Next() {
  FTokenPos = Run;
  if (Run >= FLine.size()) {
    FTokenID = tkNull;
    return;
  }
  if (FRange == rsCStyleComment) return CommentProc(QStringLiteral("*/"), rsCStyleComment);
  if (FRange == rsBraceComment) return CommentProc(QStringLiteral("}"), rsBraceComment);
  const QChar C = FLine[Run];
  if (C.unicode() >= 1 && C.unicode() <= 32) {
    FTokenID = tkSpace;
    while (Run < FLine.size() && FLine[Run].unicode() >= 1 && FLine[Run].unicode() <= 32) ++Run;
  } else if (IsIdentStart(C)) {
    int End;
    const int Hash = KeyHash(FLine, Run, &End);
    FTokenID = IdentKind(Hash, End);
    Run = End;
  } else if (C >= u'0' && C <= u'9') {
    FTokenID = tkNumber;
    while (Run < FLine.size() && ((FLine[Run] >= u'0' && FLine[Run] <= u'9') || FLine[Run] == u'.')) ++Run;
  } else if (C == u'"') {
    FTokenID = tkString;
    const qsizetype E = FLine.indexOf(u'"', Run + 1);
    Run = E < 0 ? int(FLine.size()) : int(E + 1);
  } else if (C == u'/' && Run + 1 < FLine.size() && FLine[Run + 1] == u'*') {
    Run += 2;
    CommentProc(QStringLiteral("*/"), rsCStyleComment);
  } else if (C == u'{') {
    ++Run;
    CommentProc(QStringLiteral("}"), rsBraceComment);
  } else {
    FTokenID = tkUnknown;
    ++Run;
  }
}

const TSynHighlighterAttributes& TSynSampleSyn::GetTokenAttribute() const {
  switch (FTokenID) {
    case tkComment: return fCommentAttri;
    case tkKey: return fKeyAttri;
    case tkSpace: return fSpaceAttri;
    case tkString: return fStringAttri;
    case tkVariable: return fVariableAttri;
    case tkNumber: return fNumberAttri;
    default: return fIdentifierAttri;
  }
}

const TSynHighlighterAttributes* TSynSampleSyn::GetDefaultAttribute(int AIndex) const {
  switch (AIndex) {
    case 0: return &fCommentAttri;
    case 1: return &fIdentifierAttri;
    case 2: return &fKeyAttri;
    case 3: return &fStringAttri;
    case 4: return &fSpaceAttri;
    default: return nullptr;
  }
}

QString TSynSampleSyn::GetKeyWords() const { return ReservedWords().join(u','); }
