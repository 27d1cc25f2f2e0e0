// The drawing's file forms: binary (the clipboard payload too) and XML.
#include "KRNArena.h"
#include "SelkaXMLDoc.h"
#include "VDIFormat.h"
#include "VectorDrawing.h"

#include <QFile>

#include <algorithm>
#include <exception>
#include <optional>

namespace {
const QString SMagic = QStringLiteral("MelvarineVectorDrawing");

// The tag table follows the file's version during a load and goes back to the
// current one afterwards, also when the load fails.
struct TVersionScope {
  explicit TVersionScope(TVectorDrawing& ADrawing) : D(ADrawing) {}
  TVersionScope(const TVersionScope&) = delete;
  TVersionScope& operator=(const TVersionScope&) = delete;
  TVectorDrawing& D;
  // Set by a loader that saw every item's ID; otherwise the items are walked.
  std::optional<int> LargestID;
  ~TVersionScope() {
    D.SetVersion(QString::fromLatin1(TVectorDrawing::CurrentVersion));
    SetVDTagTable(D.Version());
    if (LargestID) D.SetMaxIDAbove(*LargestID);
    else D.RecalcMaxID();
    D.SetChangeCount(0);
    D.EndUpdate();
  }
};
}  // namespace

// ---- layers -----------------------------------------------------------------

void TLayers::LoadFromStream(TVDReader& R) {
  ClearRaw();
  const qint32 N = R.I32();
  R.CheckCount(N, 10);
  for (qint32 I = 0; I < N; ++I) {
    const qint32 ID = R.I32();
    const QString Name = R.Utf8Str(1);
    const TColor Color = R.U32();
    AppendRaw(ID, Name, Color, R.U8() != 0);
  }
  Repair();
}

void TLayers::SaveToStream(TVDWriter& W) const {
  W.I32(Count());
  for (const auto& L : FList) {
    W.I32(L->ID());
    W.Str(L->Name(), 1);
    W.U32(L->Color());
    W.U8(L->Visible() ? 1 : 0);
  }
}

void TLayers::LoadFromXMLNode(IXMLNode& ANode) {
  ClearRaw();
  IXMLNodeList& C = ANode.ChildNodes();
  for (int I = 0; I < C.Count(); ++I) {
    IXMLNode* L = C.GetNode(I);
    if (L->NodeType() != ntElement) continue;
    AppendRaw(int(L->AttrAsInteger(VDTags().LayerID)),
              VDDecodeText(L->AttrAsString(QStringLiteral("LayerName")), *FOwner, 1.4),
              TColor(L->AttrAsInteger(QStringLiteral("LayerColor"))), L->AttrAsBoolean(QStringLiteral("LayerVisible")));
  }
  Repair();
}

void TLayers::SaveToXMLNode(IXMLNode& ANode) const {
  for (const auto& L : FList) {
    IXMLNode* N = ANode.AddChild(QStringLiteral("Layer"));
    N->SetAttr(VDTags().LayerID, qint64(L->ID()));
    N->SetAttr(QStringLiteral("LayerName"), VDEncodeText(L->Name()));
    N->SetAttr(QStringLiteral("LayerColor"), qint64(L->Color()));
    N->SetAttrBool(QStringLiteral("LayerVisible"), L->Visible());
  }
}

// ---- the document -----------------------------------------------------------

std::vector<TVectorDrawingItem*> TVectorDrawing::ItemsToSave(bool AOnlySelItems) const {
  std::vector<TVectorDrawingItem*> R;
  if (AOnlySelItems) {
    for (int I = 0; I < FSelSet->Count(); ++I) R.push_back(FSelSet->Items(I));
  } else {
    for (const auto& I : FList) R.push_back(I.get());
  }
  return R;
}

bool TVectorDrawing::SaveToStream(TStream& AStream, TVDSaveFormat ASaveFormat, bool AOnlySelItems) {
  if (ASaveFormat == sfXML) {
    // Items go straight into the text, never made into nodes.
    const std::unique_ptr<IXMLDocument> Doc = NewXMLDocument();
    IXMLNode* Root = Doc->AddRoot(SMagic);
    SaveXMLHeader(*Root);
    IXMLNode* Items = Root->AddChild(QStringLiteral("DrawingItems"));
    const std::vector<TVectorDrawingItem*> List = ItemsToSave(AOnlySelItems);
    const QString& ItemTag = VDTags().Item;
    AStream.SetSize(0);
    AStream.SetPosition(0);
    Doc->SaveToStreamWith(AStream, *Items, List.size(), [&](TXMLElementOut& AOut, size_t AIndex) {
      AOut.Begin(ItemTag);
      TVDTextOut Out(AOut);
      List[AIndex]->WriteToXML(Out);
      AOut.End();
    });
  } else {
    TVDWriter W(AStream);
    W.U8(22);
    W.Write(SMagic.toLatin1().constData(), 22);
    W.Str(FVersion, 1);
    W.U32(FBackColor);
    W.I32(FDrawingWidth);
    W.I32(FDrawingHeight);
    W.Str(FRemark, 4);
    W.Str(FExtData, 4);
    FLayers->SaveToStream(W);
    const std::vector<TVectorDrawingItem*> Items = ItemsToSave(AOnlySelItems);
    W.I32(qint32(Items.size()));
    for (const TVectorDrawingItem* I : Items) I->WriteToStream(W);
  }
  FChangeCount = 0;
  return true;
}

void TVectorDrawing::SaveToXMLNode(IXMLNode& ANode, bool AOnlySelItems) const {
  SaveXMLHeader(ANode);
  IXMLNode* Items = ANode.AddChild(QStringLiteral("DrawingItems"));
  for (const TVectorDrawingItem* I : ItemsToSave(AOnlySelItems)) {
    TVDNodeOut Out(*Items->AddChild(VDTags().Item));
    I->WriteToXML(Out);
  }
}

void TVectorDrawing::SaveXMLHeader(IXMLNode& ANode) const {
  ANode.SetAttr(QStringLiteral("Version"), FVersion);
  ANode.SetAttr(QStringLiteral("BackColor"), qint64(FBackColor));
  ANode.SetAttr(QStringLiteral("DrawingWidth"), qint64(FDrawingWidth));
  ANode.SetAttr(QStringLiteral("DrawingHeight"), qint64(FDrawingHeight));
  ANode.AddChild(QStringLiteral("Remark"))->SetText(FRemark);
  ANode.AddChild(QStringLiteral("ExtData"))->SetText(FExtData);
  FLayers->SaveToXMLNode(*ANode.AddChild(QStringLiteral("Layers")));
}

bool TVectorDrawing::SaveToFile(const QString& AFileName, TVDSaveFormat ASaveFormat, bool AOnlySelItems) {
  TBytesStream S;
  // The drawing counts as saved only once the file is in place.
  const int Changes = FChangeCount;
  SaveToStream(S, ASaveFormat, AOnlySelItems);
  FChangeCount = Changes;
  // Whole or not at all: a failure leaves the old file as it was.
  QString Error;
  if (!WriteFileAtomically(AFileName, S.Bytes(), Error))
    throw EVDEError(QStringLiteral("无法写入文件[%1]：%2").arg(AFileName, Error));
  FChangeCount = 0;
  return true;
}

bool TVectorDrawing::LoadFromStream(TStream& AStream) {
  TVDSaveFormat F;
  return LoadFromStream(AStream, F);
}

bool TVectorDrawing::LoadFromStream(TStream& AStream, TVDSaveFormat& ASaveFormat) {
  const qint64 Pos = AStream.GetPosition();
  char Head[5];
  if (AStream.Read(Head, 5) != 5) {
    AStream.SetPosition(Pos);
    throw EVDEError(SVDInvalidStream);
  }
  AStream.SetPosition(Pos);
  ASaveFormat = QByteArray(Head, 5).toLower() == "<?xml" ? sfXML : sfBin;
  // A load that fails leaves the drawing as it was: its content is kept in the binary
  // form and read back.
  const int Changes = FChangeCount, MaxID = FMaxID;
  const QString OriVersion = FOriVersion;
  TBytesStream Before;
  SaveToStream(Before, sfBin);
  FChangeCount = Changes;
  try {
    if (ASaveFormat == sfXML) LoadXML(AStream);
    else LoadBinary(AStream);
  } catch (...) {
    Before.SetPosition(0);
    LoadBinary(Before);
    SetOriVersion(OriVersion);
    FChangeCount = Changes;
    FMaxID = MaxID;
    throw;
  }
  return true;
}

void TVectorDrawing::LoadBinary(TStream& AStream) {
  Initialize(false);
  const TKRNArenaScope Arena;
  BeginUpdate();
  TVersionScope Scope(*this);
  TVDReader R(AStream, *this);
  if (R.U8() != 22) throw EVDEError(SVDInvalidStream);
  QByteArray Magic(22, '\0');
  R.Read(Magic.data(), 22);
  if (QString::fromLatin1(Magic).compare(SMagic, Qt::CaseInsensitive) != 0) throw EVDEError(SVDInvalidStream);
  SetVersion(R.Utf8Str(1));
  R.VersionRead();
  FBackColor = R.U32();
  FDrawingWidth = R.I32();
  FDrawingHeight = R.I32();
  // The header's strings are UTF-8 in every version, as the layer names are; only item
  // strings of streams below 1.9 are GBK.
  FRemark = R.Utf8Str(4);
  FExtData = FVersion == QLatin1String("1.0") ? QString() : R.Utf8Str(4);
  FLayers->LoadFromStream(R);
  const qint32 N = R.I32();
  R.CheckCount(N, 17);
  // the count was checked against the bytes left, so it cannot ask for more than they hold
  FList.reserve(size_t(N));
  FIDIndex.Reserve(size_t(N));
  int Largest = -1;
  for (qint32 I = 0; I < N; ++I) {
    const TVDIClassInfo* Info = FindVDIClass(R.U8());
    if (!Info) throw EVDEError(SVDInvalidStream);
    std::unique_ptr<TVectorDrawingItem> Item(Info->Create(this));
    Item->LoadFromStream(R);
    Largest = std::max(Largest, Item->ID());
    AppendRaw(Item.release());
  }
  Scope.LargestID = Largest;
}

void TVectorDrawing::LoadXMLHeader(IXMLNode& ARoot) {
  Clear();
  SetVersion(ARoot.AttrAsString(QStringLiteral("Version")));
  SetOriVersion(FVersion);
  SetVDTagTable(FVersion);
  FBackColor = TColor(ARoot.AttrAsInteger(QStringLiteral("BackColor")));
  FDrawingWidth = int(ARoot.AttrAsInteger(QStringLiteral("DrawingWidth")));
  FDrawingHeight = int(ARoot.AttrAsInteger(QStringLiteral("DrawingHeight")));
  if (IXMLNode* Layers = ARoot.ChildNodes().FindNode(QStringLiteral("Layers"))) FLayers->LoadFromXMLNode(*Layers);
  else FLayers->Repair();
}

void TVectorDrawing::LoadXMLItem(IXMLNode& ANode) {
  qint64 Type;
  const TVDIClassInfo* Info = TryStrToInt64(ANode.AttrAsView(VDTags().ItemType), Type) ? FindVDIClass(int(Type)) : nullptr;
  if (!Info) throw EVDEError(SVDInvalidXML);
  std::unique_ptr<TVectorDrawingItem> Item(Info->Create(this));
  Item->LoadFromXMLNode(ANode);
  AppendRaw(Item.release());
}

void TVectorDrawing::LoadXML(TStream& AStream) {
  const std::unique_ptr<IXMLDocument> Doc = NewXMLDocument();
  std::optional<TVersionScope> Scope;
  // Items are read as the parser completes them, once the header and the layers they
  // refer to are known; a document laid out otherwise is read from its whole tree.
  // An item's error waits for the end of the parse, so malformed text still reads as such.
  const IXMLNode* Streamed = nullptr;
  bool Decided = false;
  std::exception_ptr ItemError;
  const TXMLElementDone Done = [&](IXMLNode& AElement, int ADepth) {
    if (ADepth != 3) return false;
    IXMLNode* Items = AElement.Parent();
    if (!Decided) {
      if (Items->Name().compare(QLatin1String("DrawingItems"), Qt::CaseInsensitive) != 0) return false;
      Decided = true;
      IXMLNode* Root = Items->Parent();
      IXMLNodeList& C = Root->ChildNodes();
      if (Root->Name().compare(SMagic, Qt::CaseInsensitive) != 0 ||
          C.FindNode(QStringLiteral("DrawingItems")) != Items || !C.FindNode(QStringLiteral("Layers")))
        return false;
      BeginUpdate();
      Scope.emplace(*this);
      LoadXMLHeader(*Root);
      // An item takes well over this many bytes of text: room for all at once, not regrown.
      const size_t Room = size_t(AStream.GetSize() / 160);
      FList.reserve(Room);
      Streamed = Items;
    }
    if (Items != Streamed) return false;
    if (!ItemError) {
      try {
        LoadXMLItem(AElement);
      } catch (...) {
        ItemError = std::current_exception();
      }
    }
    return true;
  };
  try {
    Doc->LoadFromStreamWith(AStream, Done);
  } catch (const EXMLError&) {
    Initialize(false);
    throw EVDEError(SVDInvalidXML);
  }
  IXMLNode* Root = Doc->Root();
  if (!Root || Root->Name().compare(SMagic, Qt::CaseInsensitive) != 0) throw EVDEError(SVDInvalidXML);
  if (ItemError) std::rethrow_exception(ItemError);
  if (!Streamed) {
    BeginUpdate();
    Scope.emplace(*this);
    LoadXMLHeader(*Root);
  }
  IXMLNodeList& C = Root->ChildNodes();
  IXMLNode* Remark = C.FindNode(QStringLiteral("Remark"));
  FRemark = Remark ? Remark->Text() : QString();
  IXMLNode* Ext = C.FindNode(QStringLiteral("ExtData"));
  FExtData = Ext ? Ext->Text() : QString();
  if (IXMLNode* Items = C.FindNode(QStringLiteral("DrawingItems"))) {
    IXMLNodeList& L = Items->ChildNodes();
    for (int I = 0; I < L.Count(); ++I)
      if (L.GetNode(I)->NodeType() == ntElement) LoadXMLItem(*L.GetNode(I));
  }
}

bool TVectorDrawing::LoadFromFile(const QString& AFileName) {
  TVDSaveFormat F;
  return LoadFromFile(AFileName, F);
}

bool TVectorDrawing::LoadFromFile(const QString& AFileName, TVDSaveFormat& ASaveFormat) {
  if (!FileStatus(AFileName).Exists) throw EVDEError(QStringLiteral("文件[%1]不存在").arg(AFileName));
  QByteArray Data;
  QString Error;
  if (!ReadFileCapped(AFileName, MaxFileBytes, Data, Error))
    throw EVDEError(QStringLiteral("无法读取文件[%1]：%2").arg(AFileName, Error));
  TBytesStream S(std::move(Data));
  return LoadFromStream(S, ASaveFormat);
}

void TVectorDrawing::Assign(const TVectorDrawing& ASource) {
  TBytesStream S;
  const_cast<TVectorDrawing&>(ASource).SaveToStream(S, sfBin, false);
  S.SetPosition(0);
  LoadFromStream(S);
}
