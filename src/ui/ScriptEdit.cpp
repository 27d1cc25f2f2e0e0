#include "ScriptEdit.h"

#include <QPainter>
#include <QTextBlock>

class TLineNumberMargin : public QWidget {
public:
  explicit TLineNumberMargin(TScriptEdit* AEdit) : QWidget(AEdit), FEdit(AEdit) {}
  QSize sizeHint() const override { return {FEdit->LineNumberWidth(), 0}; }

protected:
  void paintEvent(QPaintEvent* AEvent) override { FEdit->PaintNumbers(AEvent); }

private:
  TScriptEdit* FEdit;
};

TSynSampleHighlighter::TSynSampleHighlighter(QTextDocument* ADocument) : QSyntaxHighlighter(ADocument) {}

QTextCharFormat TSynSampleHighlighter::Format(const TSynHighlighterAttributes& A) {
  QTextCharFormat F;
  if (A.Foreground != TSynHighlighterAttributes::ColorDefault)
    F.setForeground(QColor(int(A.Foreground & 0xFF), int((A.Foreground >> 8) & 0xFF), int((A.Foreground >> 16) & 0xFF)));
  if (A.Bold) F.setFontWeight(QFont::Bold);
  F.setFontItalic(A.Italic);
  F.setFontUnderline(A.Underline);
  return F;
}

void TSynSampleHighlighter::highlightBlock(const QString& AText) {
  const int Prev = previousBlockState();
  FSyn.SetRange(Prev < 0 ? rsUnKnown : TRangeState(Prev));
  FSyn.SetLine(AText, currentBlock().blockNumber());
  while (!FSyn.GetEol()) {
    const QString Token = FSyn.GetToken();
    if (!Token.isEmpty()) setFormat(FSyn.GetTokenPos(), int(Token.size()), Format(FSyn.GetTokenAttribute()));
    FSyn.Next();
  }
  setCurrentBlockState(int(FSyn.GetRange()));
}

TScriptEdit::TScriptEdit(QWidget* AParent)
    : QPlainTextEdit(AParent), FMargin(new TLineNumberMargin(this)), FHighlighter(new TSynSampleHighlighter(document())) {
  setFont(QFont(QStringLiteral("Courier New"), 10));
  setLineWrapMode(QPlainTextEdit::NoWrap);
  connect(this, &QPlainTextEdit::blockCountChanged, this, [this] { setViewportMargins(LineNumberWidth(), 0, 0, 0); });
  connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& R, int DY) {
    if (DY) FMargin->scroll(0, DY);
    else FMargin->update(0, R.y(), FMargin->width(), R.height());
  });
  setViewportMargins(LineNumberWidth(), 0, 0, 0);
}

int TScriptEdit::LineNumberWidth() const {
  int Digits = 1;
  for (int N = std::max(1, blockCount()); N >= 10; N /= 10) ++Digits;
  return 8 + fontMetrics().horizontalAdvance(QLatin1Char('9')) * std::max(2, Digits);
}

QString TScriptEdit::WordAtCaret() const {
  const QString Line = textCursor().block().text();
  const int Col = textCursor().positionInBlock();
  const auto Word = [](QChar C) { return C.isLetterOrNumber() || C == QLatin1Char('_'); };
  int A = Col, B = Col;
  while (A > 0 && Word(Line[A - 1])) --A;
  while (B < Line.size() && Word(Line[B])) ++B;
  return Line.mid(A, B - A);
}

void TScriptEdit::resizeEvent(QResizeEvent* AEvent) {
  QPlainTextEdit::resizeEvent(AEvent);
  const QRect R = contentsRect();
  FMargin->setGeometry(R.left(), R.top(), LineNumberWidth(), R.height());
}

void TScriptEdit::PaintNumbers(QPaintEvent* AEvent) {
  QPainter P(FMargin);
  P.fillRect(AEvent->rect(), QColor(240, 240, 240));
  P.setPen(Qt::gray);
  QTextBlock B = firstVisibleBlock();
  int Top = qRound(blockBoundingGeometry(B).translated(contentOffset()).top());
  while (B.isValid() && Top <= AEvent->rect().bottom()) {
    const int H = qRound(blockBoundingRect(B).height());
    if (B.isVisible())
      P.drawText(0, Top, FMargin->width() - 4, H, Qt::AlignRight, QString::number(B.blockNumber() + 1));
    Top += H;
    B = B.next();
  }
}
