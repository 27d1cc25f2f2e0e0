#pragma once
// The script highlighter's scanner, free of widget code: tokens of one line at a
// time, comment ranges carried across lines, reserved words found through a
// 501-entry hash table, and the draw set's param names marked as variables.

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

enum TtkTokenKind { tkComment, tkIdentifier, tkKey, tkNull, tkSpace, tkString, tkVariable, tkNumber, tkUnknown };
enum TRangeState { rsUnKnown, rsBraceComment, rsCStyleComment, rsString };

extern const char* const NTokenKind[9];

struct TSynHighlighterAttributes {
  QString Name;
  quint32 Foreground;  // 0x00BBGGRR, or ColorDefault
  bool Bold = false, Italic = false, Underline = false;
  static constexpr quint32 ColorDefault = 0xFFFFFFFF;
};

class TSynSampleSyn {
public:
  static constexpr int IdentTableSize = 501;
  static constexpr int FreeEntry = -100;

  TSynSampleSyn();

  void SetLine(const QString& ALine, int ALineNumber);
  void Next();
  bool GetEol() const { return FTokenID == tkNull; }
  TRangeState GetRange() const { return FRange; }
  void SetRange(TRangeState AValue) { FRange = AValue; }
  void ResetRange() { FRange = rsUnKnown; }
  QString GetToken() const { return FLine.mid(FTokenPos, Run - FTokenPos); }
  TtkTokenKind GetTokenID() const { return FTokenID; }
  const TSynHighlighterAttributes& GetTokenAttribute() const;
  int GetTokenKind() const { return int(FTokenID); }
  int GetTokenPos() const { return FTokenPos; }
  // 0 comment, 1 identifier, 2 key, 3 string, 4 space
  const TSynHighlighterAttributes* GetDefaultAttribute(int AIndex) const;
  QString GetKeyWords() const;
  static QString GetLanguageName() { return QStringLiteral("CHBASIC"); }

  // The hash of a name: each letter or "_" counts its upper-case code less 64; any
  // other character ends the name.
  static int KeyHash(const QString& AText, int AStart, int* AEnd = nullptr);
  static const QStringList& ReservedWords();

  void CreateKey();
  // Marks a param name. Reusing a freed entry refuses hashes of 501 and more with
  // the hint "键值添加失败！" (the message box is owned by AHandle).
  void AddKey(const QString& AKeyString, quintptr AHandle = 0);
  void DeleteKey(const QString& AKeyString);
  void ChangeKey(const QString& AOldString, const QString& ANewString);
  void ClearVarialKey();
  int VariableKeyCount() const { return int(FVariableArray.size()); }

  TSynHighlighterAttributes fCommentAttri, fIdentifierAttri, fKeyAttri, fSpaceAttri, fStringAttri, fNumberAttri,
      fVariableAttri;

private:
  enum THandler { hDefault, hKey, hVariable };
  TtkTokenKind IdentKind(int AHash, int AEnd);
  bool SameWord(const QString& AWord, int AEnd) const;
  void SetHandler(int AHash);
  void CommentProc(const QString& AClose, TRangeState ARange);

  QString FLine;
  int FLineNumber = 0;
  int Run = 0;
  int FTokenPos = 0;
  TRangeState FRange = rsUnKnown;
  TtkTokenKind FTokenID = tkNull;
  THandler fIdentFuncTable[IdentTableSize];
  std::vector<int> fkeyArray;
  std::vector<int> FVariableArray;  // hash per param, FreeEntry when free
  QStringList fprogV;
};
