#include "Dialogs.h"
#include "SynCHBASICEdit.h"

#include <gtest/gtest.h>

namespace {
// "kind(text) ..." of one line.
QString Tokens(TSynSampleSyn& S, const QString& ALine) {
  QStringList Out;
  for (S.SetLine(ALine, 0); !S.GetEol(); S.Next())
    Out << QStringLiteral("%1(%2)").arg(QLatin1String(NTokenKind[S.GetTokenID()]), S.GetToken());
  return Out.join(u' ');
}
}  // namespace

TEST(TSynSampleSyn, HashIgnoresCaseAndEndsAtOtherCharacters) {
  EXPECT_EQ(TSynSampleSyn::KeyHash(QStringLiteral("if"), 0), 9 + 6);
  EXPECT_EQ(TSynSampleSyn::KeyHash(QStringLiteral("IF"), 0), 15);
  EXPECT_EQ(TSynSampleSyn::KeyHash(QStringLiteral("a_b"), 0), 1 + 31 + 2);
  int End;
  EXPECT_EQ(TSynSampleSyn::KeyHash(QStringLiteral("l1x"), 0, &End), 12);
  EXPECT_EQ(End, 1);
  EXPECT_EQ(TSynSampleSyn::ReservedWords().size(), 29);
}

TEST(TSynSampleSyn, TokenKinds) {
  TSynSampleSyn S;
  S.AddKey(QStringLiteral("Lc"));
  EXPECT_EQ(Tokens(S, QStringLiteral("If a>LC then")),
            QStringLiteral("tkKey(If) tkSpace( ) tkIdentifier(a) tkUnknown(>) tkVariable(LC) tkSpace( ) tkIdentifier(then)"));
  EXPECT_EQ(Tokens(S, QStringLiteral("x=12.5+\"ab c\"+\"open")),
            QStringLiteral("tkIdentifier(x) tkUnknown(=) tkNumber(12.5) tkUnknown(+) tkString(\"ab c\") tkUnknown(+) tkString(\"open)"));
  EXPECT_EQ(Tokens(S, QStringLiteral("call sub return")),
            QStringLiteral("tkIdentifier(call) tkSpace( ) tkIdentifier(sub) tkSpace( ) tkIdentifier(return)"));
  EXPECT_EQ(Tokens(S, QStringLiteral("a/b")), QStringLiteral("tkIdentifier(a) tkUnknown(/) tkIdentifier(b)"));
  EXPECT_EQ(Tokens(S, QString()), QString());
  EXPECT_EQ(S.GetLanguageName(), QStringLiteral("CHBASIC"));
}

TEST(TSynSampleSyn, CommentsCrossLines) {
  TSynSampleSyn S;
  EXPECT_EQ(Tokens(S, QStringLiteral("a /* start")), QStringLiteral("tkIdentifier(a) tkSpace( ) tkComment(/* start)"));
  EXPECT_EQ(S.GetRange(), rsCStyleComment);
  EXPECT_EQ(Tokens(S, QStringLiteral("inside")), QStringLiteral("tkComment(inside)"));
  EXPECT_EQ(Tokens(S, QStringLiteral("still */ b")), QStringLiteral("tkComment(still */) tkSpace( ) tkIdentifier(b)"));
  EXPECT_EQ(S.GetRange(), rsUnKnown);
  EXPECT_EQ(Tokens(S, QStringLiteral("{ x")), QStringLiteral("tkComment({ x)"));
  EXPECT_EQ(S.GetRange(), rsBraceComment);
  EXPECT_EQ(Tokens(S, QStringLiteral("y } int")), QStringLiteral("tkComment(y }) tkSpace( ) tkKey(int)"));
  S.SetRange(rsCStyleComment);
  S.ResetRange();
  EXPECT_EQ(Tokens(S, QStringLiteral("if")), QStringLiteral("tkKey(if)"));
}

TEST(TSynSampleSyn, ParamsSharingAHashWithAKeyword) {
  TSynSampleSyn S;
  S.AddKey(QStringLiteral("fi"));  // the hash of "if"
  EXPECT_EQ(Tokens(S, QStringLiteral("if FI fj")), QStringLiteral("tkKey(if) tkSpace( ) tkVariable(FI) tkSpace( ) tkIdentifier(fj)"));
  S.DeleteKey(QStringLiteral("fi"));
  EXPECT_EQ(Tokens(S, QStringLiteral("if fi")), QStringLiteral("tkKey(if) tkSpace( ) tkIdentifier(fi)"));
  S.ChangeKey(QStringLiteral("nope"), QStringLiteral("len"));
  EXPECT_EQ(Tokens(S, QStringLiteral("LEN")), QStringLiteral("tkVariable(LEN)"));
  S.ClearVarialKey();
  EXPECT_EQ(Tokens(S, QStringLiteral("len")), QStringLiteral("tkIdentifier(len)"));
}

TEST(TSynSampleSyn, LongNamesInAFreedEntryAreRefused) {
  TDialogScope Boxes;
  TSynSampleSyn S;
  const QString Long(20, u'z');  // hash 520
  S.AddKey(QStringLiteral("a"));
  S.DeleteKey(QStringLiteral("a"));
  S.AddKey(Long);
  EXPECT_EQ(Boxes->Lines(), QStringList{QStringLiteral("[提示] 键值添加失败！")});
  EXPECT_EQ(S.VariableKeyCount(), 1);
  S.AddKey(QStringLiteral("b"));  // takes the free entry
  S.AddKey(Long);                 // a new entry is not checked
  EXPECT_EQ(Boxes->Calls.size(), 1u);
  EXPECT_EQ(S.VariableKeyCount(), 2);
  EXPECT_EQ(Tokens(S, Long), QStringLiteral("tkIdentifier(%1)").arg(Long));
}

TEST(TSynSampleSyn, Attributes) {
  TSynSampleSyn S;
  EXPECT_EQ(S.fKeyAttri.Name, QStringLiteral("Reserved Word"));
  EXPECT_EQ(S.fKeyAttri.Foreground, 0xFF0000u);  // blue as 0x00BBGGRR
  EXPECT_TRUE(S.fKeyAttri.Bold);
  EXPECT_TRUE(S.fCommentAttri.Italic);
  EXPECT_TRUE(S.fVariableAttri.Underline);
  EXPECT_EQ(S.fNumberAttri.Foreground, 0x000080u);
  EXPECT_EQ(S.GetDefaultAttribute(2), &S.fKeyAttri);
  EXPECT_EQ(S.GetDefaultAttribute(9), nullptr);
  S.SetLine(QStringLiteral("\"s\""), 0);
  EXPECT_EQ(&S.GetTokenAttribute(), &S.fStringAttri);
}
