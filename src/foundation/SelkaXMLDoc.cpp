#include "SelkaXMLDoc.h"

#include "SelkaHashUtils.h"

#include <QFile>
#include <QHash>
#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

namespace {

// Equal characters, for the short names and values compared in the hot paths (inline:
// a library call costs more than the comparison).
inline bool SameChars(const QChar* A, const QChar* B, qsizetype N) {
  for (; N >= 4; A += 4, B += 4, N -= 4) {
    std::uint64_t X, Y;
    std::memcpy(&X, A, 8);
    std::memcpy(&Y, B, 8);
    if (X != Y) return false;
  }
  for (; N > 0; ++A, ++B, --N)
    if (*A != *B) return false;
  return true;
}

inline bool SameName(const QString& A, const QString& B) {
  return A.size() == B.size() && (A.constData() == B.constData() || SameChars(A.constData(), B.constData(), A.size()));
}

// Element and attribute names read from documents live as long as the process: a copy of
// a string over raw data counts no references, and every node and attribute holds a copy
// of its name. Documents use few distinct names; past the bound they are ordinary strings.
QString LastingName(QStringView AName) {
  struct TPool {
    std::mutex Lock;
    QHash<QStringView, QString> Known;  // keys view the values' characters
    std::vector<std::unique_ptr<QChar[]>> Store;
    qsizetype StoredChars = 0;
  };
  static TPool* const Pool = new TPool;  // never freed: names stay valid to the very end
  constexpr qsizetype MaxChars = 64 * 1024, MaxNameChars = 128;
  const std::lock_guard<std::mutex> Guard(Pool->Lock);
  if (const auto It = Pool->Known.constFind(AName); It != Pool->Known.cend()) return *It;
  if (AName.size() > MaxNameChars || Pool->StoredChars + AName.size() > MaxChars) return AName.toString();
  auto Chars = std::make_unique<QChar[]>(size_t(AName.size()) + 1);
  std::copy(AName.begin(), AName.end(), Chars.get());
  const QString Name = QString::fromRawData(Chars.get(), AName.size());
  Pool->Known.insert(QStringView(Chars.get(), AName.size()), Name);
  Pool->StoredChars += AName.size();
  Pool->Store.push_back(std::move(Chars));
  return Name;
}

class TXMLNode;

// A parsed value without entities stays in the document's text; any other value is owned.
class TXMLNodeAttribute : public IXMLNodeAttribute {
public:
  TXMLNodeAttribute(QString AName, quint32 AHash, QString AValue)
      : FName(std::move(AName)), FOwned(std::move(AValue)), FHashData(AHash) {}
  TXMLNodeAttribute(QString AName, quint32 AHash, QStringView AInText)
      : FName(std::move(AName)), FText(AInText.data()), FSize(AInText.size()), FHashData(AHash) {}
  TXMLNodeAttribute(TXMLNodeAttribute&&) noexcept = default;
  TXMLNodeAttribute& operator=(TXMLNodeAttribute&&) noexcept = default;
  QString Name() const override { return FName; }
  const QString& NameRef() const { return FName; }
  QString AsString() const override { return FText ? QString(FText, FSize) : FOwned; }
  QStringView AsView() const override { return FText ? QStringView(FText, FSize) : QStringView(FOwned); }
  void SetAsString(const QString& AValue) override {
    FOwned = AValue;
    FText = nullptr;
  }
  bool AsBoolean() const override { return AsView().compare(QLatin1String("True"), Qt::CaseInsensitive) == 0; }
  void SetAsBoolean(bool AValue) override { SetAsString(AValue ? QStringLiteral("True") : QStringLiteral("False")); }
  qint64 AsInteger() const override {
    qint64 V;
    return TryStrToInt64(AsView(), V) ? V : 0;
  }
  void SetAsInteger(qint64 AValue) override { SetAsString(QString::number(AValue)); }
  double AsFloat() const override { return StrToFloatDef(AsView(), 0.0); }
  void SetAsFloat(double AValue) override { SetAsString(FloatToStr(AValue)); }
  quint32 Hash() const { return FHashData; }

private:
  QString FName, FOwned;
  const QChar* FText = nullptr;
  qsizetype FSize = 0;
  quint32 FHashData;
};

class TXMLNodeAttributes : public IXMLNodeAttributes {
public:
  using TList = std::vector<TXMLNodeAttribute>;
  int Count() const override { return int(FList.size()); }
  IXMLNodeAttribute* Add(const QString& AName) override {
    quint32 H = 0;
    const int I = Find(AName, H);
    if (I >= 0) return &FList[size_t(I)];
    if (FList.empty()) FList.reserve(8);  // a node built in code takes several
    return &FList.emplace_back(AName, H, QString());
  }
  IXMLNodeAttribute* GetItemsByName(const QString& AName) override { return Add(AName); }
  int IndexOf(const QString& AName) const override {
    quint32 H = 0;
    return Find(AName, H);
  }
  IXMLNodeAttribute* GetItem(int AIndex) const override {
    return const_cast<TXMLNodeAttribute*>(&FList[size_t(AIndex)]);
  }
  void Delete(int AIndex) override { FList.erase(FList.begin() + AIndex); }
  void Clear() override { FList.clear(); }
  // The attributes of a parsed tag, in one allocation; AFrom is left empty for the next tag.
  void Take(TList& AFrom) {
    FList.reserve(AFrom.size());
    for (TXMLNodeAttribute& A : AFrom) FList.push_back(std::move(A));
    AFrom.clear();
  }
  // Where a parsed attribute goes in a tag's list: a repeated name keeps its last value.
  static int FindByHash(const TList& AList, const QString& AName, quint32 AHash) {
    for (size_t I = 0; I < AList.size(); ++I)
      if (AList[I].Hash() == AHash && SameText(AList[I].NameRef(), AName)) return int(I);
    return -1;
  }

private:
  // Names are unique ignoring case, so an exact match is the match. Readers ask in about
  // the order the attributes stand: the search starts after the last one found. AHash is
  // set when no exact match is found.
  int Find(const QString& AName, quint32& AHash) const {
    const size_t N = FList.size();
    const size_t From = std::min(FHint, N);
    for (size_t I = From; I < N; ++I)
      if (SameName(FList[I].NameRef(), AName)) return Found(I);
    for (size_t I = 0; I < From; ++I)
      if (SameName(FList[I].NameRef(), AName)) return Found(I);
    AHash = TStrKeyHash::StrHash(AName, false);
    return FindByHash(FList, AName, AHash);
  }

  int Found(size_t AIndex) const {
    FHint = AIndex + 1;
    return int(AIndex);
  }

  TList FList;
  mutable size_t FHint = 0;
};

class TXMLNodeList : public IXMLNodeList {
public:
  int Count() const override { return int(FList.size()); }
  IXMLNode* GetNode(int AIndex) const override {
    return AIndex >= 0 && AIndex < Count() ? FList[size_t(AIndex)].get() : nullptr;
  }
  IXMLNode* FindNode(const QString& AName) const override {
    const int I = IndexOf(AName);
    return I >= 0 ? FList[size_t(I)].get() : nullptr;
  }
  IXMLNode* GetNodeByName(const QString& AName) const override { return FindNode(AName); }
  int IndexOf(const IXMLNode* ANode) const override {
    for (size_t I = 0; I < FList.size(); ++I)
      if (FList[I].get() == ANode) return int(I);
    return -1;
  }
  int IndexOf(const QString& AName) const override;
  void Delete(int AIndex) override { FList.erase(FList.begin() + AIndex); }
  void Remove(IXMLNode* ANode) override {
    const int I = IndexOf(ANode);
    if (I >= 0) Delete(I);
  }
  void Move(int ACurIndex, int ANewIndex) override {
    auto N = std::move(FList[size_t(ACurIndex)]);
    FList.erase(FList.begin() + ACurIndex);
    FList.insert(FList.begin() + std::clamp(ANewIndex, 0, Count()), std::move(N));
  }
  void Exchange(int AIndex1, int AIndex2) override { std::swap(FList[size_t(AIndex1)], FList[size_t(AIndex2)]); }
  void Clear() override { FList.clear(); }
  IXMLNode* Append(std::unique_ptr<IXMLNode> ANode) {
    FList.push_back(std::move(ANode));
    return FList.back().get();
  }
  void DeleteLast() { FList.pop_back(); }

private:
  std::vector<std::unique_ptr<IXMLNode>> FList;
};

class TXMLNode : public IXMLNode {
public:
  TXMLNode(IXMLNode* AParent, TXMLNodeType AType, QString AName)
      : FParent(AParent), FType(AType), FName(std::move(AName)) {}
  TXMLNodeType NodeType() const override { return FType; }
  QString Name() const override { return FName; }
  IXMLNode* Parent() const override { return FParent; }
  QString Text() const override {
    if (FType != ntElement) return FValue;
    QString T;
    for (int I = 0; I < FNodeList.Count(); ++I) {
      const IXMLNode* C = FNodeList.GetNode(I);
      if (C->NodeType() == ntText || C->NodeType() == ntCData) T += C->Text();
    }
    return T;
  }
  void SetText(const QString& AValue) override {
    if (FType != ntElement) {
      FValue = AValue;
      return;
    }
    for (int I = FNodeList.Count() - 1; I >= 0; --I)
      if (FNodeList.GetNode(I)->NodeType() == ntText) FNodeList.Delete(I);
    if (!AValue.isEmpty()) AddChild(QString(), ntText)->SetText(AValue);
  }
  IXMLNodeAttributes& Attributes() override { return FAttributes; }
  IXMLNodeList& ChildNodes() override { return FNodeList; }
  IXMLNode* AddChild(const QString& AName, TXMLNodeType AType) override {
    return FNodeList.Append(std::make_unique<TXMLNode>(this, AType, AName));
  }
  const TXMLNodeList& Children() const { return FNodeList; }
  TXMLNodeList& Children() { return FNodeList; }
  void SetName(const QString& AName) { FName = AName; }
  const TXMLNodeAttributes& Attrs() const { return FAttributes; }
  TXMLNodeAttributes& Attrs() { return FAttributes; }

private:
  IXMLNode* FParent;
  TXMLNodeType FType;
  TXMLNodeAttributes FAttributes;
  TXMLNodeList FNodeList;
  QString FName;
  QString FValue;
};

int TXMLNodeList::IndexOf(const QString& AName) const {
  for (size_t I = 0; I < FList.size(); ++I)
    if (FList[I]->NodeType() == ntElement && SameText(FList[I]->Name(), AName)) return int(I);
  return -1;
}

// ---- writing ----------------------------------------------------------------

void EscapeInto(QString& Out, QStringView S) {
  qsizetype Plain = 0;
  const auto Flush = [&](qsizetype AEnd) {
    if (AEnd > Plain) Out.append(S.mid(Plain, AEnd - Plain));
  };
  for (qsizetype I = 0; I < S.size(); ++I) {
    QLatin1String Entity;
    switch (S[I].unicode()) {
      case u'&': Entity = QLatin1String("&amp;"); break;
      case u'<': Entity = QLatin1String("&lt;"); break;
      case u'>': Entity = QLatin1String("&gt;"); break;
      case u'\'': Entity = QLatin1String("&apos;"); break;
      case u'"': Entity = QLatin1String("&quot;"); break;
      case u'\n': Entity = QLatin1String("&#xA;"); break;
      case u'\r': Entity = QLatin1String("&#xD;"); break;
      default: continue;
    }
    Flush(I);
    Out.append(Entity);
    Plain = I + 1;
  }
  Flush(S.size());
}

QString Escape(const QString& S) {
  QString R;
  EscapeInto(R, S);
  return R;
}

void AppendPad(QString& Out, int ADepth) { Out.resize(Out.size() + qsizetype(ADepth) * 2, u' '); }

void WriteText(QString& Out, QStringView T) {
  // A text of blanks only would be dropped as layout on the next load: it is
  // written as character references (a NUL has none and stays as it is).
  bool Blank = true;
  for (const QChar C : T)
    if (C.unicode() > 32) {
      Blank = false;
      break;
    }
  if (!Blank) {
    EscapeInto(Out, T);
    return;
  }
  for (const QChar C : T) {
    if (C.unicode() == 0) {
      Out.append(C);
      continue;
    }
    Out.append(QLatin1String("&#x"));
    Out.append(QString::number(C.unicode(), 16).toUpper());
    Out.append(u';');
  }
}

// A parent whose children are written one at a time straight into the text.
struct TStreamedChildren {
  const IXMLNode* Parent = nullptr;
  size_t Count = 0;
  const TXMLChildWriter* Write = nullptr;
};

void WriteNode(const TXMLNode& N, QString& Out, bool AIndent, int ADepth, const TStreamedChildren& AStream) {
  switch (N.NodeType()) {
    case ntText:
      WriteText(Out, N.Text());
      return;
    case ntCData:
      Out.append(QLatin1String("<![CDATA["));
      Out.append(N.Text());
      Out.append(QLatin1String("]]>"));
      return;
    case ntComment:
      if (AIndent) AppendPad(Out, ADepth);
      Out.append(QLatin1String("<!--"));
      Out.append(N.Text());
      Out.append(QLatin1String("-->"));
      return;
    default: break;
  }
  const size_t Streamed = AStream.Parent == &N ? AStream.Count : 0;
  if (AIndent) AppendPad(Out, ADepth);
  Out.append(u'<');
  Out.append(N.Name());
  const TXMLNodeAttributes& A = N.Attrs();
  for (int I = 0; I < A.Count(); ++I) {
    Out.append(u' ');
    Out.append(A.GetItem(I)->Name());
    Out.append(QLatin1String("=\""));
    EscapeInto(Out, A.GetItem(I)->AsString());
    Out.append(u'"');
  }
  const TXMLNodeList& C = N.Children();
  if (C.Count() == 0 && Streamed == 0) {
    Out.append(QLatin1String("/>"));
    return;
  }
  Out.append(u'>');
  // Indentation goes only where no text is: inside mixed content the breaks would
  // become part of the text when the document is read again.
  bool HasBlock = Streamed > 0, HasText = false;
  for (int I = 0; I < C.Count(); ++I) {
    const TXMLNodeType T = C.GetNode(I)->NodeType();
    if (T == ntElement || T == ntComment) HasBlock = true;
    else HasText = true;
  }
  const bool Break = AIndent && HasBlock && !HasText;
  const auto WriteChild = [&](const TXMLNode& Child) {
    const bool Block = Child.NodeType() == ntElement || Child.NodeType() == ntComment;
    if (Break && Block) Out.append(u'\n');
    WriteNode(Child, Out, Break && Block, ADepth + 1, AStream);
  };
  for (int I = 0; I < C.Count(); ++I) WriteChild(*static_cast<const TXMLNode*>(C.GetNode(I)));
  if (Streamed > 0) {
    TXMLElementOut E(Out, Break, ADepth + 1);
    for (size_t I = 0; I < Streamed; ++I) (*AStream.Write)(E, I);
  }
  if (Break) {
    Out.append(u'\n');
    AppendPad(Out, ADepth);
  }
  Out.append(QLatin1String("</"));
  Out.append(N.Name());
  Out.append(u'>');
}

// ---- parsing ----------------------------------------------------------------

// One pass over the text; each routine starts at the character it names.
class TXMLParser {
public:
  TXMLParser(const QString& AData, const TXMLElementDone* ADone) : FData(AData), FDone(ADone) { FNames.reserve(MaxSharedNames); }

  // document = [header] { comment | blank } element { comment | blank }
  void Parse(std::unique_ptr<TXMLNode>& ARoot, QString& AVersion, QString& AEncoding) {
    SkipBlank();
    if (Starts(QLatin1String("<?xml"))) Header(AVersion, AEncoding);
    for (;;) {
      SkipBlank();
      if (Starts(QLatin1String("<!--"))) {
        Comment(nullptr);
      } else if (Starts(QLatin1String("<!"))) {
        SkipPast(QLatin1String(">"));  // a document type declaration is skipped
      } else if (Starts(QLatin1String("<?"))) {
        SkipPast(QLatin1String("?>"));
      } else {
        break;
      }
    }
    if (!Starts(QLatin1String("<"))) Fail(QStringLiteral("no root element"));
    ARoot = std::make_unique<TXMLNode>(nullptr, ntElement, QString());
    Element(*ARoot);
    SkipBlank();
    while (Starts(QLatin1String("<!--"))) {
      Comment(nullptr);
      SkipBlank();
    }
    if (FPos < FData.size()) Fail(QStringLiteral("text after the root element"));
  }

private:
  [[noreturn]] void Fail(const QString& AWhat) const {
    throw EXMLError(QStringLiteral("XML 解析错误（位置 %1）：%2").arg(FPos).arg(AWhat));
  }
  bool Starts(QLatin1String S) const { return QStringView(FData).mid(FPos).startsWith(S); }
  void SkipBlank() {
    while (FPos < FData.size() && FData[FPos].unicode() <= 32) ++FPos;
  }
  void SkipPast(QLatin1String AEnd) {
    const qsizetype E = FData.indexOf(AEnd, FPos);
    if (E < 0) Fail(QStringLiteral("unterminated markup"));
    FPos = E + AEnd.size();
  }
  static bool IsNameChar(QChar C) {
    static constexpr auto Ascii = [] {
      std::array<bool, 128> T{};
      for (int I = 33; I < 128; ++I) T[size_t(I)] = I != '=' && I != '/' && I != '>' && I != '<' && I != '"' && I != '\'';
      return T;
    }();
    return C.unicode() >= 128 || Ascii[C.unicode()];
  }
  // Names repeat from element to element: each distinct one is made once (up to a
  // bound), with the hash its attribute needs.
  // Same: the table index of the first name equal to this one ignoring case; Follow:
  // the index of the name that came after this one last time.
  struct TName {
    QString Text;
    quint32 Hash;
    size_t Same;
    size_t Follow;
  };
  static constexpr size_t KNoIndex = size_t(-1);
  static constexpr size_t MaxSharedNames = 256;
  const TName& SharedName() {
    const qsizetype S = FPos;
    // Names come in the same few orders: the one that followed the last name the
    // previous time is tried first, straight against the text.
    if (FNext < FNames.size()) {
      const QString& T = FNames[FNext].Text;
      const qsizetype E = S + T.size();
      if (E <= FData.size() && SameChars(FData.constData() + S, T.constData(), T.size()) &&
          (E == FData.size() || !IsNameChar(FData[E]))) {
        FPos = E;
        return Took(FNext);
      }
    }
    while (FPos < FData.size() && IsNameChar(FData[FPos])) ++FPos;
    const QStringView V = QStringView(FData).mid(S, FPos - S);
    for (size_t I = 0; I < FNames.size(); ++I) {
      const QString& T = FNames[I].Text;
      if (T.size() == V.size() && SameChars(T.constData(), V.data(), V.size())) {
        if (FPrev < FNames.size()) FNames[FPrev].Follow = I;
        return Took(I);
      }
    }
    QString Text = LastingName(V);
    const quint32 Hash = TStrKeyHash::StrHash(Text, false);
    if (FNames.size() >= MaxSharedNames) {
      FSpareName = {std::move(Text), Hash, KNoIndex, KNoIndex};
      FPrev = FNext = KNoIndex;
      return FSpareName;
    }
    size_t Same = FNames.size();
    for (size_t I = 0; I < FNames.size(); ++I)
      if (FNames[I].Hash == Hash && SameText(FNames[I].Text, Text)) {
        Same = FNames[I].Same;
        break;
      }
    FNames.push_back({std::move(Text), Hash, Same, KNoIndex});
    if (FPrev < FNames.size()) FNames[FPrev].Follow = FNames.size() - 1;
    return Took(FNames.size() - 1);
  }
  const TName& Took(size_t AIndex) {
    FPrev = AIndex;
    FNext = FNames[AIndex].Follow;
    return FNames[AIndex];
  }

  QString Decode(QStringView S) const {
    if (!S.contains(u'&')) return S.toString();
    QString R;
    R.reserve(S.size());
    for (qsizetype I = 0; I < S.size(); ++I) {
      if (S[I] != u'&') {
        R += S[I];
        continue;
      }
      const qsizetype E = S.indexOf(u';', I);
      if (E < 0 || E - I > 12) Fail(QStringLiteral("bad entity"));
      const QStringView Ent = S.mid(I + 1, E - I - 1);
      if (Ent == QLatin1String("amp")) R += u'&';
      else if (Ent == QLatin1String("lt")) R += u'<';
      else if (Ent == QLatin1String("gt")) R += u'>';
      else if (Ent == QLatin1String("apos")) R += u'\'';
      else if (Ent == QLatin1String("quot")) R += u'"';
      else if (Ent.startsWith(u'#')) {
        bool Ok = false;
        const uint Code = Ent.size() > 1 && (Ent[1] == u'x' || Ent[1] == u'X') ? Ent.mid(2).toUInt(&Ok, 16)
                                                                               : Ent.mid(1).toUInt(&Ok, 10);
        if (!Ok || Code == 0 || Code > 0x10FFFF) Fail(QStringLiteral("bad character reference"));
        R += QString::fromUcs4(reinterpret_cast<const char32_t*>(&Code), 1);
      } else {
        Fail(QStringLiteral("unknown entity"));
      }
      I = E;
    }
    return R;
  }

  // header = "<?xml" { attribute } "?>"
  void Header(QString& AVersion, QString& AEncoding) {
    FPos += 5;
    TXMLNode Tmp(nullptr, ntElement, QString());
    Attributes(Tmp, QLatin1String("?>"));
    if (!Starts(QLatin1String("?>"))) Fail(QStringLiteral("'?>' expected"));
    FPos += 2;
    AVersion = Tmp.Attributes().IndexOf(QStringLiteral("version")) >= 0 ? Tmp.AttrAsString(QStringLiteral("version")) : AVersion;
    AEncoding = Tmp.Attributes().IndexOf(QStringLiteral("encoding")) >= 0 ? Tmp.AttrAsString(QStringLiteral("encoding")) : AEncoding;
  }

  // attributes = { blank [name] "=" quote value quote } up to AEnd or ">" or "/>"
  void Attributes(TXMLNode& ANode, QLatin1String AEnd) {
    FTag.clear();
    // A name can repeat an earlier one only if its table entry (ignoring case) was seen
    // in this tag: one bit each. A name past the table is searched for in the tag, and so
    // is every name after it.
    std::array<std::uint64_t, 4> Seen{};
    static_assert(MaxSharedNames <= 4 * 64);
    bool ByBits = true;
    for (;;) {
      SkipBlank();
      if (FPos >= FData.size()) Fail(QStringLiteral("unterminated tag"));
      const QChar C = FData[FPos];
      if (C == u'>' || ((C == u'/' || C == u'?') && (Starts(AEnd) || Starts(QLatin1String("/>"))))) {
        ANode.Attrs().Take(FTag);
        return;
      }
      const TName& N = SharedName();
      SkipBlank();
      if (FPos >= FData.size() || FData[FPos] != u'=') Fail(QStringLiteral("'=' expected after attribute name"));
      ++FPos;
      SkipBlank();
      if (FPos >= FData.size() || (FData[FPos] != u'"' && FData[FPos] != u'\'')) Fail(QStringLiteral("quoted value expected"));
      const QChar Q = FData[FPos++];
      // Values are short: one plain pass finds the closing quote and any entity.
      const QChar* const Begin = FData.constData() + FPos;
      const QChar* const End = FData.constData() + FData.size();
      const QChar* P = Begin;
      bool Entity = false;
      for (; P < End && *P != Q; ++P) Entity |= *P == u'&';
      if (P == End) Fail(QStringLiteral("unterminated attribute value"));
      const QStringView V(Begin, P - Begin);
      TXMLNodeAttribute A = Entity ? TXMLNodeAttribute(N.Text, N.Hash, Decode(V)) : TXMLNodeAttribute(N.Text, N.Hash, V);
      const size_t Word = N.Same / 64;
      const std::uint64_t Bit = std::uint64_t(1) << (N.Same % 64);
      ByBits = ByBits && N.Same != KNoIndex;
      if (ByBits && !(Seen[Word] & Bit)) {
        Seen[Word] |= Bit;
        FTag.push_back(std::move(A));
      } else {
        const int Same = TXMLNodeAttributes::FindByHash(FTag, N.Text, N.Hash);
        if (Same >= 0) FTag[size_t(Same)] = std::move(A);
        else FTag.push_back(std::move(A));
      }
      FPos = P - FData.constData() + 1;
    }
  }

  // comment = "<!--" text "-->"
  void Comment(TXMLNode* AParent) {
    FPos += 4;
    const qsizetype E = FData.indexOf(QLatin1String("-->"), FPos);
    if (E < 0) Fail(QStringLiteral("unterminated comment"));
    if (AParent) AParent->AddChild(QString(), ntComment)->SetText(FData.mid(FPos, E - FPos));
    FPos = E + 3;
  }

  // element = "<" name attributes ( "/>" | ">" content "</" name ">" )
  void Element(TXMLNode& ANode) {
    if (++FDepth > 1000) Fail(QStringLiteral("nesting too deep"));
    ++FPos;
    const QString N = SharedName().Text;
    if (N.isEmpty()) Fail(QStringLiteral("element name expected"));
    ANode.SetName(N);
    Attributes(ANode, QLatin1String("/>"));
    if (Starts(QLatin1String("/>"))) {
      FPos += 2;
      --FDepth;
      return;
    }
    ++FPos;  // ">"
    Content(ANode);
    // "</" name ">"
    FPos += 2;
    const qsizetype CloseStart = FPos;
    while (FPos < FData.size() && IsNameChar(FData[FPos])) ++FPos;
    const QStringView Close = QStringView(FData).mid(CloseStart, FPos - CloseStart);
    if (Close != N) Fail(QStringLiteral("</%1> closes <%2>").arg(Close.toString(), N));
    SkipBlank();
    if (FPos >= FData.size() || FData[FPos] != u'>') Fail(QStringLiteral("'>' expected"));
    ++FPos;
    --FDepth;
  }

  // content = { text | element | comment | cdata } up to "</"
  void Content(TXMLNode& ANode) {
    for (;;) {
      const qsizetype Lt = FData.indexOf(u'<', FPos);
      if (Lt < 0) Fail(QStringLiteral("unterminated element <%1>").arg(ANode.Name()));
      if (Lt > FPos) {
        const QStringView T = QStringView(FData).mid(FPos, Lt - FPos);
        bool Blank = true;
        for (const QChar C : T)
          if (C.unicode() > 32) Blank = false;
        if (!Blank) ANode.AddChild(QString(), ntText)->SetText(Decode(T));
      }
      FPos = Lt;
      if (Starts(QLatin1String("</"))) return;
      if (Starts(QLatin1String("<!--"))) {
        Comment(&ANode);
      } else if (Starts(QLatin1String("<![CDATA["))) {
        const qsizetype E = FData.indexOf(QLatin1String("]]>"), FPos + 9);
        if (E < 0) Fail(QStringLiteral("unterminated CDATA"));
        ANode.AddChild(QString(), ntCData)->SetText(FData.mid(FPos + 9, E - FPos - 9));
        FPos = E + 3;
      } else {
        auto* Child = static_cast<TXMLNode*>(ANode.AddChild(QStringLiteral("?"), ntElement));
        Element(*Child);
        if (FDone && (*FDone)(*Child, FDepth + 1)) ANode.Children().DeleteLast();
      }
    }
  }

  const QString& FData;
  const TXMLElementDone* FDone;
  qsizetype FPos = 0;
  int FDepth = 0;
  std::vector<TName> FNames;
  TXMLNodeAttributes::TList FTag;
  size_t FNext = KNoIndex, FPrev = KNoIndex;
  TName FSpareName;
};

class TXMLDocument : public IXMLDocument {
public:
  IXMLNode* Root() const override { return FRoot.get(); }
  IXMLNode* AddRoot(const QString& AName) override {
    FRoot = std::make_unique<TXMLNode>(nullptr, ntElement, AName);
    return FRoot.get();
  }
  void LoadFromString(const QString& AText) override { Load(AText, nullptr); }
  void LoadFromStream(TStream& AStream, bool) override { LoadFromStreamWith(AStream, TXMLElementDone()); }
  void LoadFromStreamWith(TStream& AStream, const TXMLElementDone& ADone) override {
    AStream.SetPosition(0);
    QByteArray B;
    if (const auto* Bytes = dynamic_cast<const TBytesStream*>(&AStream)) {
      B = Bytes->Bytes();  // shared, not copied
      AStream.SetPosition(B.size());
    } else {
      B.resize(qsizetype(std::max<qint64>(0, AStream.GetSize())));
      AStream.ReadBuffer(B.data(), B.size());
    }
    // The header's encoding decides; without one, UTF-8.
    const qsizetype HeaderEnd = B.indexOf("?>");
    const QByteArray Head = HeaderEnd > 0 ? B.left(HeaderEnd).toLower() : QByteArray();
    const bool Gbk = Head.contains("encoding=\"gbk\"") || Head.contains("encoding=\"gb2312\"") ||
                     Head.contains("encoding='gbk'") || Head.contains("encoding='gb2312'");
    QString Text = Gbk ? QStringDecoder("GBK")(B) : QString::fromUtf8(B);
    B = QByteArray();
    if (Text.startsWith(QChar(0xFEFF))) Text.remove(0, 1);
    Load(std::move(Text), ADone ? &ADone : nullptr);
  }
  void LoadFromFile(const QString& AFileName) override {
    QByteArray Data;
    QString Error;
    if (!ReadFileCapped(AFileName, qint64(512) << 20, Data, Error))
      throw EXMLError(QStringLiteral("无法打开文件 \"%1\"：%2").arg(AFileName, Error));
    TBytesStream S(std::move(Data));
    LoadFromStream(S, true);
  }
  QString SaveToString() const override { return Text({}); }
  void SaveToStream(TStream& AStream) const override {
    const QByteArray B = SaveToString().toUtf8();
    AStream.WriteBuffer(B.constData(), B.size());
  }
  void SaveToStreamWith(TStream& AStream, IXMLNode& AParent, size_t ACount,
                        const TXMLChildWriter& AWrite) const override {
    const QByteArray B = Text({&AParent, ACount, &AWrite}).toUtf8();
    AStream.WriteBuffer(B.constData(), B.size());
  }
  void SaveToFile(const QString& AFileName) const override {
    QString Error;
    if (!WriteFileAtomically(AFileName, SaveToString().toUtf8(), Error))
      throw EXMLError(QStringLiteral("无法写入文件 \"%1\"：%2").arg(AFileName, Error));
  }
  QString Version() const override { return FVersion; }
  QString Encoding() const override { return FEncoding; }
  bool AutoIndent() const override { return FAutoIndent; }
  void SetAutoIndent(bool AValue) override { FAutoIndent = AValue; }
  bool IncludeHeader() const override { return FIncludeHeader; }
  void SetIncludeHeader(bool AValue) override { FIncludeHeader = AValue; }

private:
  QString Text(const TStreamedChildren& AStream) const {
    QString Out;
    if (FIncludeHeader)
      Out += QStringLiteral("<?xml version=\"%1\" encoding=\"%2\"?>").arg(Escape(FVersion), Escape(FEncoding)) +
             (FAutoIndent ? QStringLiteral("\n") : QString());
    if (FRoot) WriteNode(*FRoot, Out, FAutoIndent, 0, AStream);
    if (FAutoIndent) Out += u'\n';
    return Out;
  }
  void Load(QString AText, const TXMLElementDone* ADone) {
    FRoot.reset();
    FText = std::move(AText);
    TXMLParser P(FText, ADone);
    P.Parse(FRoot, FVersion, FEncoding);
  }

  // The text last read: parsed values without entities point into it.
  QString FText;
  std::unique_ptr<TXMLNode> FRoot;
  bool FAutoIndent = true;
  bool FIncludeHeader = true;
  QString FEncoding = QStringLiteral("utf-8");
  QString FVersion = QStringLiteral("1.0");
};

}  // namespace

void TXMLElementOut::Begin(const QString& AName) {
  if (FIndent) {
    FOut += u'\n';
    AppendPad(FOut, FDepth);
  }
  FOut += u'<';
  FOut += AName;
  FName = &AName;
  FHasText = false;
}

void TXMLElementOut::Attr(const QString& AName, QStringView AValue) {
  EscapeInto(BeginRawAttr(AName), AValue);
  EndRawAttr();
}

QString& TXMLElementOut::BeginRawAttr(const QString& AName) {
  FOut += u' ';
  FOut += AName;
  FOut += QLatin1StringView("=\"");
  return FOut;
}

void TXMLElementOut::Text(QStringView AValue) {
  if (AValue.isEmpty()) return;
  FOut += u'>';
  WriteText(FOut, AValue);
  FHasText = true;
}

void TXMLElementOut::End() {
  if (!FHasText) {
    FOut += QLatin1StringView("/>");
    return;
  }
  FOut += QLatin1StringView("</");
  FOut += *FName;
  FOut += u'>';
}

bool IXMLNode::HasAttr(const QString& AName) const {
  return const_cast<IXMLNode*>(this)->Attributes().IndexOf(AName) >= 0;
}

std::unique_ptr<IXMLDocument> NewXMLDocument() { return std::make_unique<TXMLDocument>(); }
