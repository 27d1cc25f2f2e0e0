#pragma once
// Item attributes as display texts: the list for new items and the one that mirrors
// the selection. Each value is validated with the system's own messages; a change
// is reported in the form items take (text, or an integer in decimal).

#include "VectorDrawing.h"

#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <memory>

enum TVDEInputMode { imEdit, imDropDownList, imDropDown, imEllipsis, imColorList };

using TVDEPropValChangedEvent = std::function<void(TVDEPropType APropType, const QString& AValue)>;
// False with the message to show when the value is refused.
using TVDEPropValValidateEvent =
    std::function<bool(TVDEPropType APropType, const QString& AValue, QString& AErrMsg)>;

// Shown for a property whose value differs between selected items.
inline const QString VDEMixedMarker = QStringLiteral("?");

class TVDEPropList;

class TVDEPropItem {
public:
  TVDEPropItem(TVDEPropList* AOwner, TVDEPropType APropType);
  TVDEPropType PropType() const { return FPropType; }
  const QString& Value() const { return FValue; }
  // Stores when valid; shows the message in an error box and keeps the old value otherwise.
  void SetValue(const QString& AValue);
  // Index of the text for enumerated types, the number itself for the others.
  int AsInteger() const;
  void SetAsInteger(int AValue);
  bool Visible() const { return FVisible; }
  void SetVisible(bool AValue) { FVisible = AValue; }
  bool Validate(const QString& AValue, QString& AErrMsg) const;
  void CopyProp(const TVDEPropItem& ASrc) { FValue = ASrc.FValue; }
  // Stores without validation or event (the selection mirror).
  void SetRaw(const QString& AValue) { FValue = AValue; }

private:
  TVDEPropList* FOwner;
  TVDEPropType FPropType;
  QString FValue;
  bool FVisible = true;
};

class TVDEPropList {
public:
  explicit TVDEPropList(TVDEPropValChangedEvent AOnPropValChanged = nullptr);
  TVDEPropList(const TVDEPropList&) = delete;
  TVDEPropList& operator=(const TVDEPropList&) = delete;
  TVDEPropItem& Items(TVDEPropType APropType) { return *FList[size_t(APropType)]; }
  const TVDEPropItem& Items(TVDEPropType APropType) const { return *FList[size_t(APropType)]; }
  void CopyProps(const TVDEPropList& ASrc);
  const TDrawingItemTypeSet& FilterItemTypeSet() const { return FFilterItemTypeSet; }
  // Hides the rows of groups none of the types has; empty shows every group.
  void SetFilterItemTypeSet(const TDrawingItemTypeSet& AValue);
  // The rows a grid shows, in grid order.
  std::vector<TVDEPropType> ShownRows() const;
  // Fills the values from the items: the first item's, "?" where another differs.
  void LoadFromItems(const std::vector<TVectorDrawingItem*>& AItems);
  TVDEPropValChangedEvent OnPropValChanged;

private:
  std::array<std::unique_ptr<TVDEPropItem>, 19> FList;
  TDrawingItemTypeSet FFilterItemTypeSet;
};

// The fixed tables of every property.
struct TVDEPropInfo {
  const char* Name;     // "ptColor"
  QString Caption;      // "颜色"
  TVDEInputMode InputMode;
  QStringList Values;   // display texts of an enumerated property
  QString Default;      // for new items
};
const TVDEPropInfo& VDEPropInfo(TVDEPropType APropType);
// By name ("ptColor"); false when there is none.
bool VDEPropTypeByName(const QString& AName, TVDEPropType& APropType);
// An item's stored value as the list shows it, and back.
QString VDEItemValueToText(TVDEPropType APropType, const QString& AItemValue);
QString VDETextToItemValue(TVDEPropType APropType, const QString& AText);
