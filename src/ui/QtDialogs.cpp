#include "QtDialogs.h"

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFontDialog>
#include <QFormLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QTranslator>
#include <QVBoxLayout>

void TQtDialogs::InstallTranslations() {
  static bool Done = false;
  if (Done || !QCoreApplication::instance()) return;
  Done = true;
  auto* T = new QTranslator(QCoreApplication::instance());
  if (T->load(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(T);
}

int TQtDialogs::MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType AType, TMsgDlgButtons AButtons) {
  QMessageBox Box(FOwner);
  Box.setWindowTitle(ATitle);
  Box.setText(AText);
  Box.setIcon(AType == mtError         ? QMessageBox::Critical
              : AType == mtWarning     ? QMessageBox::Warning
              : AType == mtConfirmation ? QMessageBox::Question
                                        : QMessageBox::Information);
  switch (AButtons) {
    case mbYesNo: Box.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    case mbYesNoCancel: Box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel); break;
    case mbOKCancel: Box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
    default: Box.setStandardButtons(QMessageBox::Ok); break;
  }
  switch (Box.exec()) {
    case QMessageBox::Yes: return mrYes;
    case QMessageBox::No: return mrNo;
    case QMessageBox::Cancel: return mrCancel;
    default: return mrOk;
  }
}

namespace {

// "Text|*.A|Text|*.B" as Qt's list of "Text (*.A)" entries; a text naming its pattern
// already is kept as it stands.
QStringList QtFilters(const QString& AFilter) {
  QStringList R;
  const QStringList Parts = AFilter.split(QLatin1Char('|'));
  for (int I = 0; I + 1 < Parts.size(); I += 2)
    R << (Parts[I].contains(QLatin1Char('(')) ? Parts[I] : QStringLiteral("%1 (%2)").arg(Parts[I], Parts[I + 1]));
  if (R.isEmpty() && !AFilter.isEmpty()) R << AFilter;
  return R;
}

}  // namespace

bool TQtDialogs::InputBox(const QString& ACaption, const QString& APrompt, QString& AValue,
                          const TInputValidator& AValidate, TMsgDlgType ARefusal) {
  QString Text = AValue;
  for (;;) {
    bool Ok = false;
    Text = QInputDialog::getText(FOwner, ACaption, APrompt, QLineEdit::Normal, Text, &Ok);
    if (!Ok) return false;
    QString Msg;
    if (AValidate && !AValidate(Text, Msg)) {
      if (ARefusal == mtInformation)
        ShowHintBox(Msg);
      else
        ShowErrorBox(Msg);
      continue;
    }
    AValue = Text;
    return true;
  }
}

bool TQtDialogs::Choose(const QString& ACaption, const QStringList& AItems, int& AIndex) {
  bool Ok = false;
  const QString S = QInputDialog::getItem(FOwner, ACaption, QString(), AItems, std::max(0, AIndex), false, &Ok);
  if (!Ok) return false;
  AIndex = int(AItems.indexOf(S));
  return AIndex >= 0;
}

bool TQtDialogs::OpenFileDialog(const QString& ACaption, const QString& AFilter, QString& AFileName) {
  const QString F =
      QFileDialog::getOpenFileName(FOwner, ACaption, AFileName, QtFilters(AFilter).join(QLatin1String(";;")));
  if (F.isEmpty()) return false;
  AFileName = F;
  return true;
}

bool TQtDialogs::SaveFileDialog(const QString& ACaption, const QString& AFilter, QString& AFileName,
                                int* AFilterIndex) {
  const QStringList Filters = QtFilters(AFilter);
  QString Selected = Filters.value(0);
  const QString F =
      QFileDialog::getSaveFileName(FOwner, ACaption, AFileName, Filters.join(QLatin1String(";;")), &Selected);
  if (F.isEmpty()) return false;
  AFileName = F;
  if (AFilterIndex) *AFilterIndex = int(Filters.indexOf(Selected)) + 1;
  return true;
}

bool TQtDialogs::ColorDialog(quint32& AColor) {
  // Colours are 0x00BBGGRR.
  const QColor C = QColorDialog::getColor(QColor(AColor & 0xFF, (AColor >> 8) & 0xFF, (AColor >> 16) & 0xFF), FOwner);
  if (!C.isValid()) return false;
  AColor = quint32(C.red()) | (quint32(C.green()) << 8) | (quint32(C.blue()) << 16);
  return true;
}

bool TQtDialogs::FontDialog(TFontSpec& AFont) {
  QFont F(AFont.Name);
  F.setPixelSize(std::max(1, std::abs(AFont.Height)));
  F.setBold(AFont.Style & 1);
  F.setItalic(AFont.Style & 2);
  bool Ok = false;
  const QFont R = QFontDialog::getFont(&Ok, F, FOwner);
  if (!Ok) return false;
  AFont = {R.family(), R.pixelSize() > 0 ? R.pixelSize() : R.pointSize(), (R.bold() ? 1 : 0) | (R.italic() ? 2 : 0)};
  return true;
}

bool TQtDialogs::FormDialog(const QString& ACaption, std::vector<TFormField>& AFields, const TFormValidator& AValidate) {
  QDialog D(FOwner);
  D.setWindowTitle(ACaption);
  auto* Form = new QFormLayout;
  std::vector<std::function<QString()>> Read;
  for (const TFormField& F : AFields) {
    if (F.Choices.isEmpty()) {
      auto* E = new QLineEdit(F.Value);
      Form->addRow(F.Label + QStringLiteral(":"), E);
      Read.push_back([E] { return E->text(); });
    } else {
      auto* C = new QComboBox;
      C->setEditable(true);
      C->addItems(F.Choices);
      C->setCurrentText(F.Value);
      Form->addRow(F.Label + QStringLiteral(":"), C);
      Read.push_back([C] { return C->currentText(); });
    }
  }
  auto* Buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  auto* Layout = new QVBoxLayout(&D);
  Layout->addLayout(Form);
  Layout->addWidget(Buttons);
  std::vector<TFormField> Edited = AFields;
  QObject::connect(Buttons, &QDialogButtonBox::rejected, &D, &QDialog::reject);
  QObject::connect(Buttons, &QDialogButtonBox::accepted, &D, [&] {
    for (size_t I = 0; I < Edited.size(); ++I) Edited[I].Value = Read[I]();
    QString Msg;
    if (AValidate && !AValidate(Edited, Msg)) {
      ShowErrorBox(Msg);  // the dialog stays
      return;
    }
    D.accept();
  });
  if (D.exec() != QDialog::Accepted) return false;
  AFields = Edited;
  return true;
}
