#include "Dialogs.h"
#include "ScriptDebugFrm.h"
#include "ScriptEdit.h"

#include <QListWidget>
#include <QTextBlock>
#include <QTextLayout>

#include <gtest/gtest.h>

namespace {

QString S(const char* AText) { return QString::fromUtf8(AText); }

// The format the highlighter gave the character at ACol of line ALine.
QTextCharFormat FormatAt(TScriptEdit& E, int ALine, int ACol) {
  const QTextBlock B = E.document()->findBlockByNumber(ALine);
  for (const QTextLayout::FormatRange& R : B.layout()->formats())
    if (ACol >= R.start && ACol < R.start + R.length) return R.format;
  return {};
}

QColor ColorAt(TScriptEdit& E, int ALine, int ACol) { return FormatAt(E, ALine, ACol).foreground().color(); }

}  // namespace

TEST(TScriptEdit, TokenKindsAndCommentsAcrossLines) {
  TScriptEdit E;
  E.Highlighter().Syn().AddKey(S("hc"));
  E.setPlainText(S("if HC>1 /* a\nstill */ x=\"s\"\n{ brace\nend } 12\nmainend"));
  const QColor Comment(0, 128, 0), Key(0, 0, 255), Str(255, 0, 255), Number(128, 0, 0), Var(128, 0, 128);
  EXPECT_EQ(ColorAt(E, 0, 0), Key);         // if
  EXPECT_TRUE(FormatAt(E, 0, 0).font().bold());
  EXPECT_EQ(ColorAt(E, 0, 3), Var);         // HC: a param in any case
  EXPECT_TRUE(FormatAt(E, 0, 3).fontUnderline());
  EXPECT_EQ(ColorAt(E, 0, 6), Number);      // 1
  EXPECT_EQ(ColorAt(E, 0, 9), Comment);     // /* a
  EXPECT_TRUE(FormatAt(E, 0, 9).fontItalic());
  EXPECT_EQ(ColorAt(E, 1, 0), Comment);     // still */ : the range crosses the line end
  EXPECT_NE(ColorAt(E, 1, 9), Comment);     // x after the close
  EXPECT_EQ(ColorAt(E, 1, 11), Str);        // "s"
  EXPECT_EQ(ColorAt(E, 2, 2), Comment);     // { brace
  EXPECT_EQ(ColorAt(E, 3, 0), Comment);     // end }
  EXPECT_EQ(ColorAt(E, 3, 6), Number);      // 12 after the brace comment
  EXPECT_EQ(ColorAt(E, 4, 0), Key);         // mainend
  // A param named later colours on the next highlight.
  E.Highlighter().Syn().DeleteKey(S("hc"));
  E.Highlighter().rehighlight();
  EXPECT_NE(ColorAt(E, 0, 3), Var);
  EXPECT_GT(E.LineNumberWidth(), 0);
}

TEST(TScriptEdit, WordAtTheCaret) {
  TScriptEdit E;
  E.setPlainText(S("cd=ln_2+hc"));
  QTextCursor C = E.textCursor();
  for (const auto& [Pos, Word] : {std::pair{0, "cd"}, {4, "ln_2"}, {7, "ln_2"}, {9, "hc"}, {10, "hc"}}) {
    C.setPosition(Pos);
    E.setTextCursor(C);
    EXPECT_EQ(E.WordAtCaret(), S(Word)) << Pos;
  }
}

TEST(TDebugForm, StepsRunsAndQueries) {
  TDialogScope Boxes;
  TDebugForm F;
  F.Initialize(S("int i\ni=2\nfrom 1 to 3\ni=i+1\nendfrom\nmainend\nsub s\nendsub"));
  F.Interpreter().AddGlobalVar(S("cd"), S("0"));
  EXPECT_EQ(F.Lines().currentRow(), 0);
  EXPECT_EQ(F.Step(), 0);
  EXPECT_EQ(F.Lines().currentRow(), 1);
  EXPECT_EQ(F.Step(), 0);
  EXPECT_EQ(F.Step(), 0);  // the block is one step
  EXPECT_EQ(F.Lines().currentRow(), 5);
  EXPECT_EQ(F.Query(S(" I ")), S("5"));
  EXPECT_EQ(F.Step(), 2);  // mainend: the sub is not reached
  EXPECT_FALSE(F.CanStep());
  EXPECT_EQ(Boxes->Lines(), QStringList{S("[提示] 执行结束！")});
  EXPECT_EQ(F.Query(S("none")), QString());

  TDebugForm Empty;
  Empty.Initialize(QString());
  EXPECT_FALSE(Empty.CanStep());

  TDebugForm Cancel;
  Cancel.Initialize(S("cancel"));
  EXPECT_EQ(Cancel.Run(), 4);
  EXPECT_EQ(Boxes->Lines().last(), S("[错误] 中断执行！"));

  // An endless loop inside one step ends with the budget's message.
  TDebugForm Loop;
  Loop.Initialize(S("int i\ni=0\ndo i<1\nloop\nmainend"));
  Loop.Run();
  EXPECT_TRUE(Boxes->Lines().join(u'\n').contains(S("without ending"))) << Boxes->Lines().join(u'\n').toStdString();
  EXPECT_FALSE(Loop.CanStep());
}
