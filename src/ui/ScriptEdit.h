#pragma once
// The script editor: a plain text editor in Courier New with a line-number margin, and
// the highlighter that colours it through the language's own scanner. The scanner's
// comment range travels from line to line in the block state.

#include "SynCHBASICEdit.h"

#include <QPlainTextEdit>
#include <QSyntaxHighlighter>

class TSynSampleHighlighter : public QSyntaxHighlighter {
public:
  explicit TSynSampleHighlighter(QTextDocument* ADocument);
  TSynSampleSyn& Syn() { return FSyn; }
  static QTextCharFormat Format(const TSynHighlighterAttributes& AAttri);

protected:
  void highlightBlock(const QString& AText) override;

private:
  TSynSampleSyn FSyn;
};

class TScriptEdit : public QPlainTextEdit {
public:
  explicit TScriptEdit(QWidget* AParent = nullptr);
  TSynSampleHighlighter& Highlighter() { return *FHighlighter; }
  int LineNumberWidth() const;
  // The word at the caret: letters, digits and "_" around it.
  QString WordAtCaret() const;

protected:
  void resizeEvent(QResizeEvent* AEvent) override;

private:
  void PaintNumbers(class QPaintEvent* AEvent);
  QWidget* FMargin;
  TSynSampleHighlighter* FHighlighter;
  friend class TLineNumberMargin;
};
