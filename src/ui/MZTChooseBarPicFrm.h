#pragma once
// The bar picture chooser "选择钢筋图形": five pages (common, BS, system by bend and
// hook, the housing department's pictures, custom by type) over one scrolling grid
// of picture cells. Through the dialog service: a script picks a picture by number
// ("choose pic N") and answers OK or Cancel.

#include "DSBarPics.h"

#include <QDialog>

#include <memory>

class IMZTBarInfoDataSvr;
class QComboBox;
class QLabel;
class QPushButton;
class QTabWidget;
class QTreeWidget;
class TVectorAutoColRow;

class TMZTChooseBarPicForm : public QDialog {
public:
  // 1 with the chosen number in APicID, 2 when cancelled. ACustomBarPics offers the
  // custom page; ASysPicDef opens on the system page.
  static int Execute(int& APicID, IMZTBarInfoDataSvr& ASysDataSvr, bool AUseCustomed, bool ACustomBarPics,
                     bool ASysPicDef, QWidget* AOwner = nullptr);

  TMZTChooseBarPicForm(const TBarPicCatalog& ACatalog, bool ACustomBarPics, QWidget* AOwner = nullptr);
  ~TMZTChooseBarPicForm() override;

  void SetPage(TBarPicPage APage);
  TBarPicPage Page() const;
  // The numbers the page shows, in order.
  const QVector<TBarPicPageItem>& PicArray() const { return FPicArray; }
  TVectorAutoColRow& Grid() { return *FBarPicsGrid; }
  QString LabelText() const;
  // Selects picture APic, on the page that lists it (the current one first); false
  // when no page offers it.
  bool SelectPicture(int APic);
  // OK: false (with the hint) when no picture is shown; else the choice is made.
  bool Accept();
  int PicID() const { return FPicID; }
  bool UseCustomed() const { return FUseCustomed; }
  void AddToCommonList();
  void RemoveFromCommonList();

private:
  void FillPage();
  void ShowLabel();
  int CurrentCustomType() const;

  const TBarPicCatalog& FCatalog;
  QVector<TBarPicPageItem> FPicArray;
  int FPicID = -1;
  bool FUseCustomed = false;
  bool FFilling = false;
  QTabWidget* FPages = nullptr;
  TVectorAutoColRow* FBarPicsGrid = nullptr;
  QComboBox* FBend = nullptr;
  QComboBox* FHook = nullptr;
  QTreeWidget* FTypes = nullptr;
  QLabel* FLabel = nullptr;
  QPushButton* FCustomButton = nullptr;
};
