#pragma once
// The dialog service with real windows: message boxes, the one-line input box with its
// check, choosers, file, colour and font dialogs, and form dialogs built from their
// fields. Standard buttons come in Chinese from Qt's own translations.

#include "Dialogs.h"

class QWidget;

class TQtDialogs : public TDialogService {
public:
  explicit TQtDialogs(QWidget* AOwner = nullptr) : FOwner(AOwner) {}
  int MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType AType, TMsgDlgButtons AButtons) override;
  bool InputBox(const QString& ACaption, const QString& APrompt, QString& AValue,
                const TInputValidator& AValidate, TMsgDlgType ARefusal) override;
  bool Choose(const QString& ACaption, const QStringList& AItems, int& AIndex) override;
  bool OpenFileDialog(const QString& ACaption, const QString& AFilter, QString& AFileName) override;
  bool SaveFileDialog(const QString& ACaption, const QString& AFilter, QString& AFileName,
                      int* AFilterIndex = nullptr) override;
  bool ColorDialog(quint32& AColor) override;
  bool FontDialog(TFontSpec& AFont) override;
  bool FormDialog(const QString& ACaption, std::vector<TFormField>& AFields, const TFormValidator& AValidate) override;
  void SetOwner(QWidget* AOwner) { FOwner = AOwner; }

  // Loads Qt's Chinese translations once, for the standard buttons.
  static void InstallTranslations();

private:
  QWidget* FOwner;
};
