#include "DrawingTestUtils.h"

#include "KRNArena.h"

#include <QTemporaryDir>
#include "SelkaStreamUtils.h"
#include "SelkaXMLDoc.h"
#include "VDEClipBrd.h"
#include "VDIFormat.h"

#include <QStringEncoder>

namespace {

// A drawing with one item of each class.
void Fill(TVectorDrawing& D) {
  D.SetBackColor(0x102030);
  D.SetDrawingWidth(800);
  D.SetDrawingHeight(600);
  D.SetRemark(QStringLiteral("节点详图"));
  D.SetExtData(QStringLiteral("host data"));
  TLayer* Bars = D.Layers().Add(QStringLiteral("钢筋"));
  auto* P = new TVectorPoint(&D, 0, 0x11, {1.23456789, -2}, 6, psCross);
  D.Add(std::unique_ptr<TVectorDrawingItem>(P));
  auto* T = new TVectorText(&D, 0, 0x22, QStringLiteral("L=1500\r\n钢筋"), {10, 20}, 0.5, QStringLiteral("宋体"), 0, 3,
                            haCenter, vaTopJustify, false, 0xABCDEF, QStringLiteral("param"));
  T->SetFloatHeight(2.5f);
  D.Add(std::unique_ptr<TVectorDrawingItem>(T));
  auto* L = new TVectorLine(&D, 0, 0x33, 2, psDash, -5, 8, msDiagonal, msArrow, {0, 0}, {100, 50});
  L->SetPrevItemID(4);
  L->SetNextItemID(9);
  L->SetLayer(Bars);
  D.Add(std::unique_ptr<TVectorDrawingItem>(L));
  D.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorArc(&D, 0, 0x44, -1, psSolid, 0, 0, msNone, msDot, {30, 0}, {20, 0}, 5, atACS)));
  TKRNPolygon2d Poly;
  Poly.List().AddLinePoint({0, 0});
  Poly.List().AddLinePoint({10, 0});
  Poly.List().AddArcPoint({10, 10}, atACS, 7.5);
  D.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorHatch(&D, 0, 0x55, bsCross, Poly)));
  D.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorCircle(&D, 0, 0x66, 3, psDot, {5, 5}, 2.25)));
  auto* PL = new TVectorPolyline(&D);
  TKRNLines2d Lines;
  Lines.List().AddLinePoint({0, 0});
  Lines.List().AddArcPoint({5, 0}, atCL, 3);
  Lines.List().AddLinePoint({5, 5});
  PL->SetPolyline(Lines);
  D.Add(std::unique_ptr<TVectorDrawingItem>(PL));
  auto* M = new TVectorHatchM(&D, 0, 0x77);
  M->XPoly().Add(new TKRNPolygon2d(TKRNBox2d{{0, 0}, {1, 1}}));
  M->SetHatchStyle(3);
  M->HatchPatternData() << QStringLiteral("45,0,0,0,1");
  D.Add(std::unique_ptr<TVectorDrawingItem>(M));
  auto* C = new TVectorComment(&D, 0, QStringLiteral("说明"), {3, 4}, QStringLiteral("2026-11-21"));
  C->CommentPoly().List().AddLinePoint({3, 4});
  C->CommentPoly().List().AddLinePoint({6, 8});
  D.Add(std::unique_ptr<TVectorDrawingItem>(C));
  auto* V = new TVectorVPBorder(&D);
  V->SetPolyline(Lines);
  D.Add(std::unique_ptr<TVectorDrawingItem>(V));
  for (int I = 0; I < D.Count(); ++I) {
    D.Items(I)->SetRelationID(100 + I);
    D.Items(I)->SetEnableType(I % 3);
    D.Items(I)->SetCurrentScale(1.5);
  }
}

void Reload(TVectorDrawing& ASource, TVectorDrawing& ATarget, TVDSaveFormat AFormat) {
  TBytesStream S;
  ASource.SaveToStream(S, AFormat, false);
  S.SetPosition(0);
  TVDSaveFormat Detected;
  ATarget.LoadFromStream(S, Detected);
  EXPECT_EQ(Detected, AFormat);
}

template <typename T>
T* ItemOf(TVectorDrawing& D, int AType) {
  for (int I = 0; I < D.Count(); ++I)
    if (D.Items(I)->ItemType() == AType) return static_cast<T*>(D.Items(I));
  return nullptr;
}

}  // namespace

TEST(TVectorDrawingFile, EveryClassRoundTripsInBothForms) {
  TVectorDrawing Src;
  Fill(Src);
  for (const TVDSaveFormat F : {sfBin, sfXML}) {
    SCOPED_TRACE(F == sfBin ? "binary" : "xml");
    TVectorDrawing D;
    Reload(Src, D, F);
    EXPECT_EQ(D.Count(), Src.Count());
    EXPECT_EQ(D.ChangeCount(), 0);
    EXPECT_EQ(D.Version(), QStringLiteral("2.2"));
    EXPECT_EQ(D.BackColor(), 0x102030u);
    EXPECT_EQ(D.DrawingWidth(), 800);
    EXPECT_EQ(D.Remark(), QStringLiteral("节点详图"));
    EXPECT_EQ(D.ExtData(), QStringLiteral("host data"));
    ASSERT_EQ(D.Layers().Count(), 2);
    EXPECT_EQ(D.Layers().Items(1)->Name(), QStringLiteral("钢筋"));
    EXPECT_EQ(D.MaxID(), Src.MaxID());
    for (int I = 0; I < D.Count(); ++I) {
      SCOPED_TRACE(I);
      const TVectorDrawingItem* A = Src.Items(I);
      const TVectorDrawingItem* B = D.Items(I);
      EXPECT_EQ(B->ItemType(), A->ItemType());
      EXPECT_EQ(B->ID(), A->ID());
      EXPECT_EQ(B->Color(), A->Color());
      EXPECT_EQ(B->RelationID(), A->RelationID());
      EXPECT_EQ(B->EnableType(), A->EnableType());
      EXPECT_EQ(B->CurrentScale(), A->CurrentScale());
      EXPECT_EQ(B->Layer()->ID(), A->Layer()->ID());
      if (A->ItemType() != itHatch && A->ItemType() != itHatchM && A->ItemType() != itComment) {
        EXPECT_NEAR(B->OutRect().MinX(), A->OutRect().MinX(), 1e-6);
        EXPECT_NEAR(B->OutRect().MaxY(), A->OutRect().MaxY(), 1e-6);
      }
    }
    auto* T = ItemOf<TVectorText>(D, itText);
    EXPECT_EQ(T->Text(), QStringLiteral("L=1500\r\n钢筋"));
    EXPECT_EQ(T->FontName(), QStringLiteral("宋体"));
    EXPECT_EQ(T->FontStyle(), 3);
    EXPECT_EQ(T->FloatHeight(), 2.5f);
    EXPECT_EQ(T->ExtData(), QStringLiteral("param"));
    EXPECT_FALSE(T->Transparent());
    EXPECT_EQ(T->HorzAlignment(), haCenter);
    auto* L = ItemOf<TVectorLine>(D, itLine);
    EXPECT_EQ(L->StartMarkSize(), -5);
    EXPECT_EQ(L->EndMarkStyle(), msArrow);
    EXPECT_EQ(L->LineStyle(), psDash);
    EXPECT_EQ(L->PrevItemID(), 4);
    EXPECT_EQ(L->NextItemID(), 9);
    EXPECT_EQ(ItemOf<TVectorArc>(D, itArc)->Arc().ArcType(), atACS);
    EXPECT_EQ(ItemOf<TVectorCircle>(D, itCircle)->Radius(), 2.25);
    EXPECT_EQ(ItemOf<TVectorPolyline>(D, itPolyline)->Polyline().List()[1]->ArcType(), atCL);
    EXPECT_EQ(ItemOf<TVectorPolyline>(D, itVPBorder)->Polyline().Count(), 3);
    // the losses of each form
    auto* H = ItemOf<TVectorHatch>(D, itHatch);
    auto* P = ItemOf<TVectorPoint>(D, itPoint);
    auto* M = ItemOf<TVectorHatchM>(D, itHatchM);
    auto* C = ItemOf<TVectorComment>(D, itComment);
    if (F == sfBin) {
      EXPECT_EQ(H->XPoly().GetCount(), 3);
      EXPECT_EQ(P->InsertPt().X, 1.23456789);
      EXPECT_EQ(M->XPoly().Count(), 0);
      EXPECT_TRUE(M->HatchPatternData().isEmpty());
      EXPECT_EQ(C->Text(), QString());
    } else {
      EXPECT_EQ(H->XPoly().GetCount(), 2);  // the arc vertex is lost
      EXPECT_EQ(P->InsertPt().X, 1.234568);
      EXPECT_EQ(M->XPoly().Count(), 1);
      EXPECT_EQ(M->HatchStyle(), 3);
      EXPECT_EQ(M->HatchPatternData(), QStringList{QStringLiteral("45,0,0,0,1")});
      EXPECT_EQ(C->Text(), QStringLiteral("说明"));
      EXPECT_EQ(C->Date(), QStringLiteral("2026-11-21"));
      EXPECT_EQ(C->CommentPoly().GetCount(), 2);
      EXPECT_EQ(D.OriVersion(), QStringLiteral("2.2"));
    }
  }
}

TEST(TVectorDrawingFile, SelectedOnlyAndFiles) {
  TVectorDrawing Src;
  Fill(Src);
  TBytesStream S;
  Src.SaveToStream(S, sfBin, true);  // an empty selection: no items, all layers
  S.SetPosition(0);
  TVectorDrawing D;
  D.LoadFromStream(S);
  EXPECT_EQ(D.Count(), 0);
  EXPECT_EQ(D.Layers().Count(), 2);
  Src.SelSet().Add(Src.Items(3));
  Src.SelSet().Add(Src.Items(1));
  TBytesStream X;
  X.Write("old content that must go", 24);
  Src.SaveToStream(X, sfXML, true);  // XML replaces the stream's content
  EXPECT_TRUE(X.Bytes().startsWith("<?xml"));
  X.SetPosition(0);
  D.LoadFromStream(X);
  ASSERT_EQ(D.Count(), 2);
  EXPECT_EQ(D.Items(0)->ID(), Src.Items(3)->ID());  // in selection order
  EXPECT_THROW(D.LoadFromFile(QStringLiteral("/nonexistent/x.lvd")), EVDEError);
  try {
    D.LoadFromFile(QStringLiteral("/nonexistent/x.lvd"));
  } catch (const EVDEError& E) {
    EXPECT_EQ(E.Message(), QStringLiteral("文件[/nonexistent/x.lvd]不存在"));
  }
  // Assign goes through the binary form: IDs carry over
  TVectorDrawing A;
  A.Assign(Src);
  EXPECT_EQ(A.Count(), Src.Count());
  EXPECT_EQ(A.Items(5)->ID(), Src.Items(5)->ID());
}

TEST(TVectorDrawingFile, UpperCaseXmlHeaderIsDetected) {
  TBytesStream S(QByteArray("<?XML version=\"1.0\"?><MelvarineVectorDrawing Version=\"2.2\"/>"));
  TVectorDrawing D;
  TVDSaveFormat F;
  D.LoadFromStream(S, F);
  EXPECT_EQ(F, sfXML);
  EXPECT_EQ(D.Layers().Count(), 1);
}

// ---- old versions, built byte by byte ---------------------------------------

namespace {
struct TBytes {
  QByteArray B;
  template <typename T>
  void Put(T V) { B.append(reinterpret_cast<const char*>(&V), sizeof V); }
  void Str(const QByteArray& S, int ALen) {
    const quint32 N = quint32(S.size());
    B.append(reinterpret_cast<const char*>(&N), ALen);
    B.append(S);
  }
};

// A drawing of one layer and two items: a line with an end arrow and a text.
QByteArray OldStream(const char* AVersion) {
  const QByteArray V(AVersion);
  const double N = V.toDouble();
  const bool Utf8 = N >= 1.9 - 0.001;
  auto Text = [&](const QString& S) { return Utf8 ? S.toUtf8() : QStringEncoder("GBK")(S); };
  TBytes W;
  W.Put<quint8>(22);
  W.B.append("MELVARINEvectorDrawing");
  W.Str(V, 1);
  W.Put<quint32>(0xFFFFFF);
  W.Put<qint32>(300);
  W.Put<qint32>(200);
  W.Str(QStringLiteral("备注").toUtf8(), 4);  // the header's strings are UTF-8 in every version
  if (V != "1.0") W.Str("ext", 4);
  W.Put<qint32>(1);  // layers
  W.Put<qint32>(0);
  W.Str("0", 1);
  W.Put<quint32>(0xFFFFFF);
  W.Put<quint8>(1);
  W.Put<qint32>(2);  // items
  auto Header = [&](quint8 AType, qint32 AID) {
    W.Put<quint8>(AType);
    W.Put<qint32>(AID);
    if (N > 1.45) {
      W.Put<qint32>(11);
      W.Put<qint32>(12);
    }
    W.Put<qint32>(0);
    W.Put<quint32>(0xFF);
    if (V != "1.0") W.Str(Text(QStringLiteral("附加")), 4);
    if (N >= 1.6) W.Put<qint32>(77);
    if (N > 1.7) W.Put<qint32>(2);
    if (N > 1.9) W.Put<double>(0.5);
  };
  Header(2, 5);
  W.Put<qint16>(1);
  W.Put<quint8>(0);
  if (V == "1.0" || V == "1.1") {
    W.Put<quint8>(2);   // MarkPos: the end
    W.Put<qint16>(6);   // MarkSize
    W.Put<quint8>(0);   // MarkStyle 0 is the arrow (+1)
  } else {
    W.Put<qint16>(0);
    W.Put<qint16>(6);
    W.Put<quint8>(0);
    W.Put<quint8>(1);
    if (N >= 2.1) {
      W.Put<qint32>(3);
      W.Put<qint32>(4);
    }
  }
  W.Put<double>(0);
  W.Put<double>(0);
  W.Put<double>(40);
  W.Put<double>(0);
  Header(1, 9);
  W.Str(Text(QStringLiteral("钢筋")), 2);
  W.Put<qint16>(5);
  W.Put<float>(0);
  W.Put<double>(1);
  W.Put<double>(2);
  W.Put<quint8>(0);
  W.Put<quint8>(1);
  W.Str(Text(QStringLiteral("宋体")), 1);
  W.Put<quint8>(1);
  W.Put<quint8>(1);
  W.Put<quint32>(0);
  if (N >= 2.2 - 0.001) W.Put<float>(1.5f);
  return W.B;
}
}  // namespace

TEST(TVectorDrawingFile, OldBinaryVersions) {
  const struct {
    const char* Version;
    const char* ExtData;
    int BlockID, RelationID, EnableType;
    double Scale;
    int PrevID;
    float FloatHeight;
  } Cases[] = {{"1.0", "", -1, -1, 0, 1.0, -1, 0},      {"1.1", "附加", -1, -1, 0, 1.0, -1, 0},
               {"1.5", "附加", 12, -1, 0, 1.0, -1, 0},   {"1.6", "附加", 12, 77, 0, 1.0, -1, 0},
               {"1.7", "附加", 12, 77, 0, 1.0, -1, 0},   {"1.8", "附加", 12, 77, 2, 1.0, -1, 0},
               {"1.9", "附加", 12, 77, 2, 1.0, -1, 0},   {"2.0", "附加", 12, 77, 2, 0.5, -1, 0},
               {"2.1", "附加", 12, 77, 2, 0.5, 3, 0},    {"2.2", "附加", 12, 77, 2, 0.5, 3, 1.5f}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Version);
    TBytesStream S(OldStream(C.Version));
    TVectorDrawing D;
    D.LoadFromStream(S);
    ASSERT_EQ(D.Count(), 2);
    EXPECT_EQ(D.Version(), QStringLiteral("2.2"));
    EXPECT_EQ(D.Remark(), QStringLiteral("备注"));
    EXPECT_EQ(D.ExtData(), QString::fromUtf8(QByteArray(C.Version) == "1.0" ? "" : "ext"));
    EXPECT_EQ(D.DrawingWidth(), 300);
    auto* L = static_cast<TVectorLine*>(D.Items(0));
    EXPECT_EQ(L->ExtData(), QString::fromUtf8(C.ExtData));
    EXPECT_EQ(L->BlockID(), C.BlockID);
    EXPECT_EQ(L->RelationID(), C.RelationID);
    EXPECT_EQ(L->EnableType(), C.EnableType);
    EXPECT_EQ(L->CurrentScale(), C.Scale);
    EXPECT_EQ(L->EndMarkStyle(), msArrow);
    EXPECT_EQ(L->EndMarkSize(), 6);
    EXPECT_EQ(L->PrevItemID(), C.PrevID);
    EXPECT_EQ(L->GetXLine().EndPt().X, 40);
    auto* T = static_cast<TVectorText*>(D.Items(1));
    EXPECT_EQ(T->Text(), QStringLiteral("钢筋"));
    EXPECT_EQ(T->FontName(), QStringLiteral("宋体"));
    EXPECT_EQ(T->FloatHeight(), C.FloatHeight);
    EXPECT_EQ(D.MaxID(), 10);
  }
  // the hand-built 2.2 stream is byte for byte what the writer produces
  TBytesStream S(OldStream("2.2"));
  TVectorDrawing D;
  D.LoadFromStream(S);
  TBytesStream Out;
  D.SaveToStream(Out);
  QByteArray Want = OldStream("2.2");
  Want.replace(1, 22, "MelvarineVectorDrawing");
  EXPECT_EQ(Out.Bytes(), Want);
}

TEST(TVectorDrawingFile, OldXmlVersions) {
  const QByteArray Gbk = QStringEncoder("GBK")(QStringLiteral("钢筋"));
  const QString TextB64Gbk = QString::fromLatin1(Gbk.toBase64());
  const struct {
    const char* Name;
    QString Xml;
    const char* Text;
    int EndStyle;
    float FloatHeight;
  } Cases[] = {
      {"1.0, long tags", QStringLiteral("<?xml version=\"1.0\"?><MelvarineVectorDrawing Version=\"1.0\"><DrawingItems>"
                                        "<Item ItemType=\"2\" ID=\"3\" LayerID=\"0\" Color=\"255\" LineWidth=\"1\" LineStyle=\"0\" "
                                        "MarkPos=\"2\" MarkSize=\"4\" MarkStyle=\"1\" Line=\"0,0,10,0\"/>"
                                        "<Item ItemType=\"1\" ID=\"4\" Text=\"plain\" FontName=\"宋体\" FontFloatHeight=\"2.5\" InsertPt=\"1,2\"/>"
                                        "</DrawingItems></MelvarineVectorDrawing>"),
       "plain", msDot, 2.5f},
      {"1.5, Base64 of GBK", QStringLiteral("<?xml version=\"1.0\"?><MelvarineVectorDrawing Version=\"1.5\"><DrawingItems>"
                                            "<DI DIT=\"2\" ID=\"3\" LID=\"0\" Cl=\"255\" LW=\"1\" LS=\"0\" SMST=\"0\" EMST=\"1\" SMS=\"0\" EMS=\"4\" Ln=\"0,0,10,0\"/>"
                                            "<DI DIT=\"1\" ID=\"4\" T=\"%1\" FN=\"%1\" IP=\"1,2\"/>"
                                            "</DrawingItems></MelvarineVectorDrawing>").arg(TextB64Gbk),
       "钢筋", msArrow, 0},
      {"2.2, broken Base64 gives the raw text",
       QStringLiteral("<?xml version=\"1.0\"?><MelvarineVectorDrawing Version=\"2.2\"><DrawingItems>"
                      "<DI DIT=\"2\" ID=\"3\" LID=\"0\" Cl=\"255\" EMST=\"1\" EMS=\"4\" Ln=\"0,0,10,0\"/>"
                      "<DI DIT=\"1\" ID=\"4\" T=\"not base64!\" =\"1.5\" IP=\"1,2\"/></DrawingItems></MelvarineVectorDrawing>"),
       "not base64!", msArrow, 1.5f},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TBytesStream S(C.Xml.toUtf8());
    TVectorDrawing D;
    D.LoadFromStream(S);
    ASSERT_EQ(D.Count(), 2);
    auto* L = static_cast<TVectorLine*>(D.Items(0));
    EXPECT_EQ(L->EndMarkStyle(), C.EndStyle);
    EXPECT_EQ(L->EndMarkSize(), 4);
    EXPECT_EQ(L->GetXLine().EndPt().X, 10);
    auto* T = static_cast<TVectorText*>(D.Items(1));
    EXPECT_EQ(T->Text(), QString::fromUtf8(C.Text));
    EXPECT_EQ(T->FloatHeight(), C.FloatHeight);
    EXPECT_EQ(T->InsertPt().Y, 2);
  }
  // after an old file the float height goes under "FontFloatHeight" for the rest of the process
  EXPECT_EQ(VDTags().FontFloatHeight, QStringLiteral("FontFloatHeight"));
  EXPECT_EQ(VDTags().Item, QStringLiteral("DI"));
}

// ---- bad input --------------------------------------------------------------

TEST(TVectorDrawingFile, TruncatedStreamsFailCleanlyAtEveryOffset) {
  TVectorDrawing Src;
  Fill(Src);
  for (const TVDSaveFormat F : {sfBin, sfXML}) {
    TBytesStream Full;
    Src.SaveToStream(Full, F, false);
    const QByteArray B = Full.Bytes();
    const int Step = F == sfBin ? 1 : 7;
    for (int Cut = 0; Cut < B.size(); Cut += Step) {
      TBytesStream S(B.left(Cut));
      TVectorDrawing D;
      try {
        D.LoadFromStream(S);
        if (F == sfBin) ADD_FAILURE() << "no error at " << Cut;
      } catch (const EVDEError&) {
      }
      ASSERT_EQ(D.UpdateCount(), 0) << Cut;
      ASSERT_EQ(D.Version(), QStringLiteral("2.2")) << Cut;
    }
  }
}

TEST(TVectorDrawingFile, AStreamNotHeldInOnePieceReadsTheSame) {
  // Blocks of 5 bytes: fields and records straddle the blocks.
  TVectorDrawing Src;
  Fill(Src);
  TBytesStream Full;
  Src.SaveToStream(Full, sfBin, false);
  const QByteArray B = Full.Bytes();
  for (int Cut = 0; Cut <= B.size(); Cut += Cut < B.size() - 40 ? 13 : 1) {
    SCOPED_TRACE(Cut);
    TBlockMemoryStream S(5);
    S.WriteBuffer(B.constData(), Cut);
    S.First();
    TVectorDrawing D;
    if (Cut < B.size()) {
      EXPECT_THROW(D.LoadFromStream(S), EVDEError);
      continue;
    }
    D.LoadFromStream(S);
    TBytesStream Again;
    D.SaveToStream(Again, sfBin, false);
    EXPECT_EQ(Again.Bytes(), B);
  }
}

TEST(TVectorDrawingFile, DamagedStreamsRaise) {
  auto Expect = [](const QByteArray& ABytes, const QString& AMessage) {
    TBytesStream S(ABytes);
    TVectorDrawing D;
    try {
      D.LoadFromStream(S);
      ADD_FAILURE() << "no error";
    } catch (const EVDEError& E) {
      EXPECT_EQ(E.Message(), AMessage);
    }
  };
  QByteArray Good = OldStream("2.2");
  QByteArray Bad = Good;
  Bad[0] = 21;
  Expect(Bad, QStringLiteral("非法矢量图流格式"));
  Bad = Good;
  Bad[5] = 'x';
  Expect(Bad, QStringLiteral("非法矢量图流格式"));
  // an unknown item type: the first item's type byte follows the item count
  Bad = Good;
  const int TypeAt = Good.indexOf(QByteArray("\x02\x00\x00\x00\x02", 5)) + 4;
  Bad[TypeAt] = 7;
  Expect(Bad, QStringLiteral("非法矢量图流格式"));
  // a huge item count or string length
  Bad = Good;
  Bad.replace(TypeAt - 4, 4, QByteArray("\xFF\xFF\xFF\x7F", 4));
  Expect(Bad, QStringLiteral("非法矢量图流格式"));
  Bad = Good;
  const int RemarkAt = 1 + 22 + 1 + 3 + 12;
  Bad.replace(RemarkAt, 4, QByteArray("\xFF\xFF\xFF\x7F", 4));
  Expect(Bad, QStringLiteral("非法矢量图流格式"));
  Expect("abc", QStringLiteral("非法矢量图流格式"));
  Expect("<?xml version=\"1.0\"?><Other/>", QStringLiteral("XML格式非法"));
  Expect("<?xml version=\"1.0\"?><MelvarineVectorDrawing Version=\"2.2\"><DrawingItems><DI DIT=\"7\"/></DrawingItems></MelvarineVectorDrawing>",
         QStringLiteral("XML格式非法"));
  Expect("<?xml version=\"1.0\"?><MelvarineVectorDrawing Version=\"2.2\"><DrawingItems><DI DIT=\"x\"/>",
         QStringLiteral("XML格式非法"));
  Expect("<?xml version=\"1.0\"?><MelvarineVectorDrawing Version=\"2.2\"><DrawingItems><DI DIT=\"8\" HchPoly=\"(,1,2,ltLine)\"/></DrawingItems></MelvarineVectorDrawing>",
         QStringLiteral("多边形字符串格式错误"));
  // damaged number fields read as 0
  TBytesStream S(QByteArray("<?xml version=\"1.0\"?><MelvarineVectorDrawing Version=\"2.2\"><DrawingItems><DI DIT=\"0\" ID=\"1\" IP=\"x,2\" PS=\"q\"/></DrawingItems></MelvarineVectorDrawing>"));
  TVectorDrawing D;
  D.LoadFromStream(S);
  EXPECT_EQ(static_cast<TVectorPoint*>(D.Items(0))->InsertPt().X, 0);
  EXPECT_EQ(static_cast<TVectorPoint*>(D.Items(0))->Size(), 0);
}

TEST(VDEClipBrd, CopyAndPasteThroughTheClipboard) {
  TVectorDrawing Src;
  Fill(Src);
  std::vector<TVectorDrawingItem*> Items;
  for (int I = 0; I < Src.Count(); ++I) Items.push_back(Src.Items(I));
  CopyToClipboard(Items);
  std::vector<std::unique_ptr<TVectorDrawingItem>> Pasted;
  PasteFromClipboard(Pasted);
  ASSERT_EQ(Pasted.size(), Items.size());
  for (size_t I = 0; I < Items.size(); ++I) {
    EXPECT_EQ(Pasted[I]->ID(), Items[I]->ID());
    EXPECT_EQ(Pasted[I]->Owner(), nullptr);
    EXPECT_EQ(Pasted[I]->Layer(), nullptr);
  }
  auto* M = dynamic_cast<TVectorHatchM*>(Pasted[7].get());
  ASSERT_NE(M, nullptr);
  EXPECT_EQ(M->XPoly().Count(), 0);  // the binary form drops its content
  // pasting into a drawing gives them an owner and layer 0
  TVectorDrawing Target;
  for (auto& P : Pasted) Target.Add(std::unique_ptr<TVectorDrawingItem>(P.release()));
  EXPECT_EQ(Target.Count(), Src.Count());
  EXPECT_EQ(Target.Items(0)->Layer(), Target.Layers().Items(0));
  CopyToClipboard({});  // nothing happens
  PasteFromClipboard(Pasted);
  EXPECT_EQ(Pasted.size(), Items.size());
}

TEST(TVectorDrawingFile, MissingXmlAttributesReadAsZeroButTheBlockIDs) {
  TBytesStream S(QByteArray("<?xml version=\"1.0\"?><MelvarineVectorDrawing Version=\"2.2\"><DrawingItems>"
                            "<DI DIT=\"3\" ID=\"1\" LID=\"0\" Ln=\"0,0,10,0\" R=\"0\" LT=\"0\"/>"
                            "</DrawingItems></MelvarineVectorDrawing>"));
  TVectorDrawing D;
  D.LoadFromStream(S);
  ASSERT_EQ(D.Count(), 1);
  const auto* L = static_cast<const TVectorLine*>(D.Items(0));
  EXPECT_EQ(L->PrevItemID(), 0);
  EXPECT_EQ(L->NextItemID(), 0);
  EXPECT_EQ(L->RelationID(), 0);
  EXPECT_EQ(L->EndMarkSize(), 0);
  EXPECT_EQ(L->BlockID(), -1);
  EXPECT_EQ(L->BlockTypeID(), -1);
}

TEST(TVectorDrawingFile, AFailedSaveLeavesTheDrawingModified) {
  QTemporaryDir Dir;
  TVectorDrawing D;
  AddLine(D, {0, 0}, {1, 1});
  ASSERT_TRUE(D.Modified());
  EXPECT_THROW(D.SaveToFile(Dir.filePath(QStringLiteral("no/such/folder/x.lvd"))), EVDEError);
  EXPECT_TRUE(D.Modified());
  EXPECT_TRUE(D.SaveToFile(Dir.filePath(QStringLiteral("x.lvd"))));
  EXPECT_FALSE(D.Modified());
}

TEST(TVectorDrawingFile, AFailedLoadLeavesTheDrawingAsItWas) {
  TVectorDrawing D;
  Fill(D);
  D.SetRemark(QStringLiteral("原来的"));
  TBytesStream Good;
  D.SaveToStream(Good, sfXML);
  D.Items(0)->SetColor(0x123456);  // modified since
  const int Count = D.Count(), Changes = D.ChangeCount(), MaxID = D.MaxID();
  QByteArray Bad = OldStream("2.2");
  Bad[5] = 'x';
  for (const QByteArray& Input :
       {Bad, QByteArray("<?xml version=\"1.0\"?><MelvarineVectorDrawing Version=\"2.2\"><DrawingItems><DI DIT=\"x\"/>"),
        QByteArray("<?xml version=\"1.0\"?><Other/>")}) {
    SCOPED_TRACE(Input.left(30).toStdString());
    TBytesStream S(Input);
    EXPECT_THROW(D.LoadFromStream(S), EVDEError);
    ASSERT_EQ(D.Count(), Count);
    EXPECT_EQ(D.Items(0)->Color(), 0x123456u);
    EXPECT_EQ(D.Remark(), QStringLiteral("原来的"));
    EXPECT_EQ(D.ChangeCount(), Changes);
    EXPECT_EQ(D.MaxID(), MaxID);
  }
}

// Font names repeat from text to text and are read once for each run of the same bytes.
TEST(TVectorDrawingFile, FontNamesOfManyTextsReadBack) {
  const QString Fonts[] = {QStringLiteral("宋体"), QStringLiteral("宋体"), QStringLiteral("黑体"), QString(),
                           QStringLiteral("宋体"), QStringLiteral("Arial"), QStringLiteral("Arial")};
  TVectorDrawing Source;
  for (const QString& F : Fonts)
    Source.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorText(&Source, 0, 0, QStringLiteral("L"), {0, 0}, 0, F, 3,
                                                                   0, haLeftJustify, vaBottomJustify, true, 0, {})));
  TVectorDrawing D;
  Reload(Source, D, sfBin);
  ASSERT_EQ(D.Count(), int(std::size(Fonts)));
  for (int I = 0; I < D.Count(); ++I)
    EXPECT_EQ(static_cast<TVectorText*>(D.Items(I))->FontName(), Fonts[I]) << I;
}

// Loaded items sit side by side in shared blocks, yet each lives on its own: one taken out
// outlives its drawing, others are deleted one by one or go with the drawing, and no
// block stays behind.
TEST(TVectorDrawingFile, ALoadedItemOutlivesItsDrawing) {
  TVectorDrawing Source;
  Fill(Source);
  const std::size_t Before = KRNArenaBlockCount();
  std::unique_ptr<TVectorDrawingItem> Kept;
  {
    TVectorDrawing D;
    Reload(Source, D, sfBin);
    for (int I = 0; I < D.Count() && !Kept; ++I)
      if (D.Items(I)->ItemType() == itHatch) Kept = D.Extract(I);
    D.Delete(0);
    D.Items(0)->Clone(&D);
  }
  ASSERT_TRUE(Kept);
  const auto& H = static_cast<const TVectorHatch&>(*Kept);
  ASSERT_EQ(H.XPoly().GetCount(), 3);
  EXPECT_EQ(H.XPoly().List().Points(1).X, 10);
  EXPECT_EQ(H.OutRect().MaxX(), ItemOf<TVectorHatch>(Source, itHatch)->OutRect().MaxX());
#ifndef __SANITIZE_ADDRESS__
  EXPECT_GT(KRNArenaBlockCount(), Before);
#endif
  Kept.reset();
  EXPECT_EQ(KRNArenaBlockCount(), Before);
}

// Items are read while the text is parsed when the layers come first; every other
// layout is read from the whole tree. Both must give the same drawing.
TEST(TVectorDrawingFile, ItemsReadDuringTheParseMatchTheTree) {
  TVectorDrawing Src;
  Fill(Src);
  TBytesStream Xml;
  Src.SaveToStream(Xml, sfXML);
  const QByteArray Text = Xml.Bytes();
  const auto BinaryOf = [](const QByteArray& AText) {
    TVectorDrawing D;
    TBytesStream S(AText);
    D.LoadFromStream(S);
    TBytesStream B;
    D.SaveToStream(B, sfBin);
    return B.Bytes();
  };
  const QByteArray Expected = BinaryOf(Text);
  EXPECT_EQ(BinaryOf(Expected), Expected);

  // the layers after the items: the items still find theirs
  const qsizetype LayersAt = Text.indexOf("<Layers>"), LayersEnd = Text.indexOf("</Layers>") + 9;
  ASSERT_GT(LayersAt, 0);
  QByteArray LayersLast = Text;
  const QByteArray Layers = Text.mid(LayersAt, LayersEnd - LayersAt);
  LayersLast.remove(LayersAt, Layers.size());
  LayersLast.insert(LayersLast.indexOf("</MelvarineVectorDrawing>"), Layers);
  EXPECT_EQ(BinaryOf(LayersLast), Expected);

  // a second item list is not read
  QByteArray TwoLists = Text;
  TwoLists.insert(TwoLists.indexOf("</MelvarineVectorDrawing>"), "<DrawingItems><DI DIT=\"5\" ID=\"99\"/></DrawingItems>");
  EXPECT_EQ(BinaryOf(TwoLists), Expected);

  // an item that cannot be read: its own message, unless the text is malformed further on
  const qsizetype ItemsAt = Text.indexOf("<DrawingItems>") + 14;
  QByteArray BadItem = Text;
  BadItem.insert(ItemsAt, "<DI DIT=\"8\" HchPoly=\"(,1,2,ltLine)\"/>");
  QByteArray BadItemThenBadText = BadItem;
  BadItemThenBadText.chop(BadItemThenBadText.size() - BadItemThenBadText.indexOf("</DrawingItems>"));
  for (const auto& [Input, Message] : {std::pair{BadItem, QStringLiteral("多边形字符串格式错误")},
                                       std::pair{BadItemThenBadText, QStringLiteral("XML格式非法")}}) {
    TVectorDrawing D;
    Fill(D);
    D.SetRemark(QStringLiteral("原来的"));
    TBytesStream Before;
    D.SaveToStream(Before, sfBin);
    TBytesStream S(Input);
    try {
      D.LoadFromStream(S);
      ADD_FAILURE() << "loaded";
    } catch (const EVDEError& E) {
      EXPECT_EQ(E.Message(), Message);
    }
    TBytesStream After;
    D.SaveToStream(After, sfBin);
    EXPECT_EQ(After.Bytes(), Before.Bytes());
  }
}

// The XML form is written item by item; the text is that of the whole tree written at once.
TEST(TVectorDrawingFile, XmlWrittenItemByItemIsTheWholeTree) {
  TVectorDrawing Full, Empty, Odd;
  Fill(Full);
  // Texts that need escaping or character references, and numbers on both sides of
  // the whole-number shortcut.
  Fill(Odd);
  const QString Texts[] = {QStringLiteral("a<b>&\"c'\r\n"), QStringLiteral(" \t "), QStringLiteral("钢筋")};
  const double Scales[] = {1e15, 999999999999999.0, -3, 0.1, 1e-7, -0.0, 2.5e20, std::nan(""), -1e300};
  for (int I = 0; I < Odd.Count(); ++I) {
    Odd.Items(I)->SetExtData(Texts[I % 3]);
    Odd.Items(I)->SetCurrentScale(Scales[I % 9]);
  }
  for (TVectorDrawing* D : {&Full, &Empty, &Odd}) {
    TBytesStream Streamed;
    D->SaveToStream(Streamed, sfXML);
    const auto Doc = NewXMLDocument();
    D->SaveToXMLNode(*Doc->AddRoot(QStringLiteral("MelvarineVectorDrawing")));
    TBytesStream Whole;
    Doc->SaveToStream(Whole);
    EXPECT_EQ(Streamed.Bytes(), Whole.Bytes());
  }
  TBytesStream S;
  Empty.SaveToStream(S, sfXML);
  EXPECT_TRUE(S.Bytes().contains("<DrawingItems/>"));
  Full.SelSet().Add(Full.Items(2));
  TBytesStream Sel;
  Full.SaveToStream(Sel, sfXML, true);
  EXPECT_EQ(Sel.Bytes().count("<DI "), 1);
}

TEST(TVectorDrawingFile, BlankTextsSurviveTheXmlForm) {
  TVectorDrawing D;
  Fill(D);
  D.SetRemark(QStringLiteral("  "));
  D.Items(0)->SetExtData(QStringLiteral("\t "));
  TVectorDrawing Back;
  Reload(D, Back, sfXML);
  EXPECT_EQ(Back.Remark(), QStringLiteral("  "));
  EXPECT_EQ(Back.Items(0)->ExtData(), QStringLiteral("\t "));
}

// The attribute texts of points, lines and vertex lists, digit for digit.
TEST(VDFormat, PointLineAndVertexTexts) {
  EXPECT_EQ(VDPointText({1.5, -2}), QStringLiteral("1.5,-2"));
  EXPECT_EQ(VDPointText({0.0000004, 1e6}), QStringLiteral("0,1000000"));
  EXPECT_EQ(VDLineText({-0.0000006, 2.0000004}, {1.25, 3}), QStringLiteral("-0.000001,2,1.25,3"));
  TKRNVertex2dList L;
  L.AddLinePoint({1.5, -2});
  L.AddArcPoint({3, 4.25}, atCS, 2.5);
  L.AddArcPoint({7, 8}, atLine, 9);
  L.AddLinePoint({0.0000004, 1e6});
  const struct {
    bool LineOnly;
    const char* Text;
  } Cases[] = {{false, "1.5,-2,0,0;3,4.25,2.5,2;7,8,0,0;0,1000000,0,0"},
               {true, "1.5,-2,0,0;7,8,0,0;0,1000000,0,0"}};
  for (const auto& C : Cases) EXPECT_EQ(VDVertexText(L, C.LineOnly), QString::fromLatin1(C.Text)) << C.LineOnly;
  TKRNVertex2dList Empty;
  EXPECT_EQ(VDVertexText(Empty, false), QString());
  TKRNVertex2dList ArcsOnly;
  ArcsOnly.AddArcPoint({1, 1}, atACL, 1);
  EXPECT_EQ(VDVertexText(ArcsOnly, true), QString());
}
