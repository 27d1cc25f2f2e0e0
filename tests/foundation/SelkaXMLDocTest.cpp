#include "SelkaXMLDoc.h"

#include <QDir>
#include <QFile>
#include <QStringEncoder>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {
QString RoundTrip(IXMLDocument& ADoc) {
  const QString Text = ADoc.SaveToString();
  const auto Back = NewXMLDocument();
  Back->LoadFromString(Text);
  return Back->SaveToString();
}
}  // namespace

TEST(TXMLDocument, WritesAndReadsBack) {
  const auto Doc = NewXMLDocument();
  Doc->SetAutoIndent(false);
  IXMLNode* Root = Doc->AddRoot(QStringLiteral("Root"));
  Root->SetAttr(QStringLiteral("Version"), QStringLiteral("2.2"));
  Root->SetAttr(QString(), QStringLiteral("3.5"));  // an empty name
  Root->AddChild(QStringLiteral("Empty"));
  Root->AddChild(QStringLiteral("Remark"))->SetText(QStringLiteral("a<b & \"c\"\nline 2"));
  IXMLNode* Item = Root->AddChild(QStringLiteral("DI"));
  Item->SetAttrBool(QStringLiteral("Tp"), true);
  Item->SetAttrFloat(QStringLiteral("R"), 12.5);
  Item->SetAttr(QStringLiteral("ID"), qint64(-7));
  Root->AddChild(QString(), ntComment)->SetText(QStringLiteral(" note "));
  Root->AddChild(QString(), ntCData)->SetText(QStringLiteral("<raw>"));
  const QString Text = Doc->SaveToString();
  EXPECT_TRUE(Text.startsWith(QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?><Root Version=\"2.2\" =\"3.5\">")));
  EXPECT_TRUE(Text.contains(QStringLiteral("<Empty/>")));
  EXPECT_TRUE(Text.contains(QStringLiteral("a&lt;b &amp; &quot;c&quot;&#xA;line 2")));
  EXPECT_TRUE(Text.contains(QStringLiteral("<!-- note -->")));
  EXPECT_TRUE(Text.contains(QStringLiteral("<![CDATA[<raw>]]>")));

  const auto Back = NewXMLDocument();
  Back->LoadFromString(Text);
  IXMLNode* R = Back->Root();
  ASSERT_NE(R, nullptr);
  EXPECT_EQ(R->AttrAsString(QString()), QStringLiteral("3.5"));
  EXPECT_EQ(R->ChildNodes().FindNode(QStringLiteral("remark"))->Text(), QStringLiteral("a<b & \"c\"\nline 2"));
  IXMLNode* I = R->ChildNodes().FindNode(QStringLiteral("DI"));
  EXPECT_TRUE(I->AttrAsBoolean(QStringLiteral("TP")));
  EXPECT_DOUBLE_EQ(I->AttrAsFloat(QStringLiteral("R")), 12.5);
  EXPECT_EQ(I->AttrAsInteger(QStringLiteral("ID")), -7);
  EXPECT_EQ(R->ChildNodes().FindNode(QStringLiteral("missing")), nullptr);
  EXPECT_EQ(RoundTrip(*Back), Back->SaveToString());
}

TEST(TXMLDocument, ReadingAnAbsentAttributeAddsIt) {
  const auto Doc = NewXMLDocument();
  IXMLNode* Root = Doc->AddRoot(QStringLiteral("R"));
  EXPECT_FALSE(Root->HasAttr(QStringLiteral("X")));
  EXPECT_EQ(Root->AttrAsInteger(QStringLiteral("X")), 0);
  EXPECT_EQ(Root->AttrAsFloat(QStringLiteral("Y")), 0);
  EXPECT_FALSE(Root->AttrAsBoolean(QStringLiteral("Z")));
  EXPECT_TRUE(Root->HasAttr(QStringLiteral("x")));
  EXPECT_EQ(Root->Attributes().Count(), 3);
  EXPECT_TRUE(Doc->SaveToString().contains(QStringLiteral("<R X=\"\" Y=\"\" Z=\"\"/>")));
  Root->SetAttr(QStringLiteral("B"), QStringLiteral("true"));
  EXPECT_TRUE(Root->AttrAsBoolean(QStringLiteral("B")));
  Root->SetAttr(QStringLiteral("F"), QStringLiteral("1,5"));
  EXPECT_EQ(Root->AttrAsFloat(QStringLiteral("F")), 0);  // only "." is a decimal separator
}

// Parsed values point into the document's own copy of the text: they outlive the
// caller's string, survive more attributes being added, and a change replaces them.
TEST(TXMLDocument, ParsedValuesOutliveTheTextAndChanges) {
  const auto Doc = NewXMLDocument();
  Doc->LoadFromString(QStringLiteral("<R a=\"12.5\" b=\"x&amp;y\" c=\"\" A=\"dup\" d=\"True\"/>"));
  IXMLNode* Root = Doc->Root();
  for (int I = 0; I < 40; ++I) Root->SetAttr(QStringLiteral("n%1").arg(I), qint64(I));
  EXPECT_EQ(Root->Attributes().Count(), 44);
  EXPECT_EQ(Root->AttrAsString(QStringLiteral("a")), QStringLiteral("dup"));  // a repeated name keeps its last value
  EXPECT_EQ(Root->Attributes().IndexOf(QStringLiteral("a")), 0);
  EXPECT_EQ(Root->AttrAsView(QStringLiteral("b")), QStringLiteral("x&y"));
  EXPECT_TRUE(Root->AttrAsView(QStringLiteral("c")).isEmpty());
  EXPECT_TRUE(Root->AttrAsBoolean(QStringLiteral("d")));
  EXPECT_EQ(Root->AttrAsInteger(QStringLiteral("n39")), 39);
  Root->SetAttr(QStringLiteral("d"), QStringLiteral("7"));
  EXPECT_EQ(Root->AttrAsView(QStringLiteral("d")), QStringLiteral("7"));
  EXPECT_EQ(Root->AttrAsInteger(QStringLiteral("d")), 7);
  Doc->LoadFromString(QStringLiteral("<S k=\"v\"/>"));
  EXPECT_EQ(Doc->Root()->AttrAsString(QStringLiteral("k")), QStringLiteral("v"));
  EXPECT_TRUE(Doc->SaveToString().contains(QStringLiteral("<S k=\"v\"/>")));
}

TEST(TXMLDocument, NodeListOperations) {
  const auto Doc = NewXMLDocument();
  IXMLNode* Root = Doc->AddRoot(QStringLiteral("R"));
  for (const char* N : {"a", "b", "c"}) Root->AddChild(QString::fromLatin1(N));
  IXMLNodeList& L = Root->ChildNodes();
  L.Move(0, 2);
  EXPECT_EQ(L.GetNode(2)->Name(), QStringLiteral("a"));
  L.Exchange(0, 1);
  EXPECT_EQ(L.GetNode(0)->Name(), QStringLiteral("c"));
  EXPECT_EQ(L.IndexOf(QStringLiteral("B")), 1);
  L.Remove(L.GetNode(1));
  EXPECT_EQ(L.Count(), 2);
  EXPECT_EQ(L.GetNode(5), nullptr);
  L.Clear();
  EXPECT_EQ(L.Count(), 0);
}

TEST(TXMLDocument, BrokenTextRaises) {
  const char* Bad[] = {"", "<a", "<a b=1/>", "<a></b>", "<a>", "<a b='x></a>", "<a>&bogus;</a>", "<a>&#0;</a>",
                       "<?xml version=\"1.0\"", "<a/><b/>", "text", "<a><!-- x</a>", "<a><![CDATA[x</a>", "<a =></a>",
                       "<a/>trailing"};
  for (const char* B : Bad) {
    SCOPED_TRACE(B);
    const auto Doc = NewXMLDocument();
    EXPECT_THROW(Doc->LoadFromString(QString::fromUtf8(B)), EXMLError);
  }
  const auto Deep = NewXMLDocument();
  EXPECT_THROW(Deep->LoadFromString(QString(5000, u'<').replace(QStringLiteral("<"), QStringLiteral("<a>"))), EXMLError);
}

TEST(TXMLDocument, StreamsInUtf8AndGbk) {
  TBytesStream Utf8(QByteArray("<?xml version=\"1.0\" encoding=\"utf-8\"?><R T=\"\xE9\x92\xA2\xE7\xAD\x8B\"/>"));
  const auto A = NewXMLDocument();
  A->LoadFromStream(Utf8);
  EXPECT_EQ(A->Root()->AttrAsString(QStringLiteral("T")), QStringLiteral("钢筋"));
  const QByteArray Gbk = QByteArray("<?xml version=\"1.0\" encoding=\"GBK\"?><R T=\"") + QStringEncoder("GBK")(QStringLiteral("钢筋")) + "\"/>";
  TBytesStream G(Gbk);
  const auto B = NewXMLDocument();
  B->LoadFromStream(G);
  EXPECT_EQ(B->Root()->AttrAsString(QStringLiteral("T")), QStringLiteral("钢筋"));
  EXPECT_EQ(B->Encoding(), QStringLiteral("GBK"));
  TBytesStream Out;
  A->SaveToStream(Out);
  EXPECT_TRUE(Out.Bytes().contains("\xE9\x92\xA2"));
}

TEST(TXMLDocument, ADeclarationNeedingEscapesLoadsBack) {
  // A declaration whose values hold quotes and ampersands, as a damaged file may carry.
  const auto Doc = NewXMLDocument();
  Doc->LoadFromString(QStringLiteral("<?xml version='1.0\"&amp;' encoding='utf-8'?><R a=\"1\"/>"));
  const QString Saved = Doc->SaveToString();
  const auto Back = NewXMLDocument();
  ASSERT_NO_THROW(Back->LoadFromString(Saved)) << Saved.toStdString();
  EXPECT_EQ(Back->Version(), Doc->Version());
  EXPECT_EQ(Back->Root()->AttrAsString(QStringLiteral("a")), QStringLiteral("1"));
}

TEST(TXMLDocument, MixedContentSavesStably) {
  // Found by fuzzing: indentation inside mixed content became text on the next load.
  // Also: a text of blank characters given as references was dropped as layout.
  for (const char* Text : {"<R a=\"0\"><C>t&amp;x</C>\xef\xbf\xbd&gt;</R>", "<R>a<B/>b<C>c</C></R>", "<R><B/>tail</R>",
                           "<R ><C><R ><C><C></C></C></R>&#6;&#6;&#5;&#5;</C></R>", "<R><B/>&#32;&#9;</R>"}) {
    SCOPED_TRACE(Text);
    const auto D = NewXMLDocument();
    D->LoadFromString(QString::fromUtf8(Text));
    const QString S1 = D->SaveToString();
    const auto E = NewXMLDocument();
    E->LoadFromString(S1);
    EXPECT_EQ(E->SaveToString(), S1);
  }
  const auto D = NewXMLDocument();
  D->LoadFromString(QStringLiteral("<R><B/>&#32;&#9;</R>"));
  EXPECT_EQ(D->Root()->Text(), QStringLiteral(" \t"));
}

TEST(TXMLDocument, FuzzRegressionsLoadSaveAndLoadAgain) {
  const QDir Dir(QStringLiteral(DSE_SOURCE_DIR "/fuzz/regressions/xmldoc"));
  const QStringList Files = Dir.entryList(QDir::Files);
  ASSERT_FALSE(Files.isEmpty());
  for (const QString& F : Files) {
    SCOPED_TRACE(F.toStdString());
    QFile File(Dir.filePath(F));
    ASSERT_TRUE(File.open(QIODevice::ReadOnly));
    const auto D = NewXMLDocument();
    D->LoadFromString(QString::fromUtf8(File.readAll()));
    const QString S1 = D->SaveToString();
    const auto E = NewXMLDocument();
    E->LoadFromString(S1);
    EXPECT_EQ(E->SaveToString(), S1);
  }
}

TEST(TXMLDocument, ElementsCanBeTakenAsTheyComplete) {
  const QByteArray Text = "<?xml version=\"1.0\"?><R a=\"1\"><A><B x=\"1\"/>t<B x=\"2\"><C/></B></A><D/></R>";
  TBytesStream S(Text);
  const auto Doc = NewXMLDocument();
  QStringList Seen;
  Doc->LoadFromStreamWith(S, [&](IXMLNode& E, int Depth) {
    Seen << QStringLiteral("%1%2%3").arg(E.Name()).arg(Depth).arg(E.AttrAsString(QStringLiteral("x")));
    EXPECT_EQ(E.Parent()->Parent() ? E.Parent()->Parent()->AttrAsString(QStringLiteral("a")) : QString(),
              Depth == 3 ? QStringLiteral("1") : QString());
    return E.Name() == QLatin1String("B");
  });
  EXPECT_EQ(Seen, QStringList({"B31", "C4", "B32", "A2", "D2"}));
  IXMLNode* A = Doc->Root()->ChildNodes().FindNode(QStringLiteral("A"));
  ASSERT_NE(A, nullptr);
  ASSERT_EQ(A->ChildNodes().Count(), 1);  // the text stays, the taken elements are gone
  EXPECT_EQ(A->Text(), QStringLiteral("t"));
  EXPECT_NE(Doc->Root()->ChildNodes().FindNode(QStringLiteral("D")), nullptr);

  TBytesStream Broken(Text.left(Text.size() - 4));
  EXPECT_THROW(Doc->LoadFromStreamWith(Broken, [](IXMLNode&, int) { return true; }), EXMLError);
}

// Elements written straight into the text read as the same nodes written by the
// document: layout, escaping, texts of blanks, an empty parent.
TEST(TXMLDocument, ElementsWrittenStraightMatchNodes) {
  const struct {
    QString Text;
    QString Value;
  } Children[] = {{QString(), QStringLiteral("plain")},
                  {QStringLiteral("a<b>&\"c'\r\n"), QStringLiteral("q\"uote<")},
                  {QStringLiteral(" \t "), QString()},
                  {QStringLiteral("钢筋"), QStringLiteral("x\ny")}};
  const QString Name = QStringLiteral("I"), Attr = QStringLiteral("v"), Num = QStringLiteral("n");
  for (const bool Indent : {true, false})
    for (const int Fixed : {0, 1, 2})  // nothing, an element, a text already in the parent
      for (const size_t Count : {size_t(0), size_t(4)}) {
        SCOPED_TRACE(QStringLiteral("%1 %2 %3").arg(Indent).arg(Fixed).arg(Count).toStdString());
        const auto Make = [&](IXMLDocument& D) {
          D.SetAutoIndent(Indent);
          IXMLNode* P = D.AddRoot(QStringLiteral("R"))->AddChild(QStringLiteral("P"));
          D.Root()->AddChild(QStringLiteral("After"));
          if (Fixed == 1) P->AddChild(QStringLiteral("F"))->SetAttr(Attr, QStringLiteral("f"));
          if (Fixed == 2) P->SetText(QStringLiteral("t"));
          return P;
        };
        const auto Nodes = NewXMLDocument();
        IXMLNode* P = Make(*Nodes);
        for (size_t I = 0; I < Count; ++I) {
          IXMLNode* C = P->AddChild(Name);
          C->SetAttr(Attr, Children[I].Value);
          C->SetAttr(Num, qint64(I));
          C->SetText(Children[I].Text);
        }
        TBytesStream Whole;
        Nodes->SaveToStream(Whole);

        const auto Straight = NewXMLDocument();
        IXMLNode* Q = Make(*Straight);
        TBytesStream Written;
        Straight->SaveToStreamWith(Written, *Q, Count, [&](TXMLElementOut& Out, size_t I) {
          Out.Begin(Name);
          Out.Attr(Attr, Children[I].Value);
          Out.BeginRawAttr(Num) += QString::number(I);
          Out.EndRawAttr();
          Out.Text(Children[I].Text);
          Out.End();
        });
        EXPECT_EQ(Written.Bytes(), Whole.Bytes());
        EXPECT_EQ(Q->ChildNodes().Count(), Fixed == 0 ? 0 : 1);
      }
}

// Names read against those that came before: prefixes of one another, the same name in
// another case, changing orders and more distinct names than are kept shared.
TEST(TXMLDocument, AttributeNamesInAnyOrderReadBack) {
  QStringList Pool = {"a", "ab", "abc", "A", "AB", "b", "ba", "x"};
  for (int I = 0; I < 300; ++I) Pool << QStringLiteral("n%1").arg(I);
  quint32 Seed = 12345;
  const auto Next = [&](int AMax) {
    Seed = Seed * 1103515245u + 12345u;
    return int((Seed >> 16) % quint32(AMax));
  };
  QString Text = QStringLiteral("<R>");
  std::vector<std::vector<std::pair<QString, QString>>> Expected;
  for (int E = 0; E < 400; ++E) {
    const int Count = Next(9);
    std::vector<std::pair<QString, QString>> Attrs;
    Text += QStringLiteral("<E");
    for (int K = 0; K < Count; ++K) {
      // mostly the small pool, in a few fixed orders, sometimes anything
      const QString Name = Next(4) == 0 ? Pool[Next(int(Pool.size()))] : Pool[(E % 3 + K) % 8];
      const QString Value = QStringLiteral("%1_%2").arg(E).arg(K);
      Text += QStringLiteral(" %1=\"%2\"").arg(Name, Value);
      const auto Same = std::find_if(Attrs.begin(), Attrs.end(),
                                     [&](const auto& P) { return P.first.compare(Name, Qt::CaseInsensitive) == 0; });
      if (Same != Attrs.end()) *Same = {Name, Value};
      else Attrs.emplace_back(Name, Value);
    }
    Text += QStringLiteral("/>");
    Expected.push_back(std::move(Attrs));
  }
  Text += QStringLiteral("</R>");
  const auto Doc = NewXMLDocument();
  Doc->LoadFromString(Text);
  ASSERT_EQ(Doc->Root()->ChildNodes().Count(), int(Expected.size()));
  for (int E = 0; E < int(Expected.size()); ++E) {
    IXMLNodeAttributes& A = Doc->Root()->ChildNodes().GetNode(E)->Attributes();
    ASSERT_EQ(A.Count(), int(Expected[size_t(E)].size())) << E;
    for (int K = 0; K < A.Count(); ++K) {
      EXPECT_EQ(A.GetItem(K)->Name(), Expected[size_t(E)][size_t(K)].first) << E;
      EXPECT_EQ(A.GetItem(K)->AsString(), Expected[size_t(E)][size_t(K)].second) << E;
    }
  }
}

TEST(TXMLDocument, NamesStayRightPastTheSharedOnesAndOutliveTheirDocument) {
  // Some 200,000 characters of distinct names over four documents: more than are ever
  // shared between documents, so the later ones are plain strings.
  std::vector<QString> Kept;
  for (int D = 0; D < 4; ++D) {
    QString Text = QStringLiteral("<R>");
    for (int I = 0; I < 1500; ++I)
      Text += QStringLiteral("<E%1_%2 name_of_some_length_%1_%2=\"%3\"/>").arg(D).arg(I).arg(I * 7);
    Text += QStringLiteral("</R>");
    const auto Doc = NewXMLDocument();
    Doc->LoadFromString(Text);
    ASSERT_EQ(Doc->Root()->ChildNodes().Count(), 1500);
    for (int I = 0; I < 1500; I += 37) {
      SCOPED_TRACE(testing::Message() << D << " " << I);
      IXMLNode* E = Doc->Root()->ChildNodes().GetNode(I);
      EXPECT_EQ(E->Name(), QStringLiteral("E%1_%2").arg(D).arg(I));
      const QString Attr = QStringLiteral("name_of_some_length_%1_%2").arg(D).arg(I);
      ASSERT_EQ(E->Attributes().Count(), 1);
      EXPECT_EQ(E->Attributes().GetItem(0)->Name(), Attr);
      EXPECT_EQ(E->AttrAsInteger(Attr), I * 7);
    }
    Kept.push_back(Doc->Root()->ChildNodes().GetNode(1499)->Attributes().GetItem(0)->Name());
  }
  for (int D = 0; D < 4; ++D) EXPECT_EQ(Kept[size_t(D)], QStringLiteral("name_of_some_length_%1_1499").arg(D));
}
