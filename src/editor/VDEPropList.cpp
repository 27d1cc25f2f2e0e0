#include "VDEPropList.h"

#include "Dialogs.h"
#include "KRNDrawFunc2d.h"
#include "SysUtils.h"

#include <QFont>
#include <QFontDatabase>

namespace {

QStringList Range(int AFrom, int ATo) {
  QStringList L;
  for (int I = AFrom; I <= ATo; ++I) L << QString::number(I);
  return L;
}

const std::array<TVDEPropInfo, 19>& Infos() {
  static const QStringList Marks = {QStringLiteral("[无]"), QStringLiteral("箭头"), QStringLiteral("圆点"),
                                    QStringLiteral("斜线"), QStringLiteral("弯钩"), QStringLiteral("弯折")};
  static const std::array<TVDEPropInfo, 19> T = {{
      {"ptExtData", QStringLiteral("扩展属性"), imEdit, {}, QString()},
      {"ptColor", QStringLiteral("颜色"), imColorList, {}, QStringLiteral("16777215")},
      {"ptPointSize", QStringLiteral("点尺寸"), imDropDown, Range(1, 10), QStringLiteral("4")},
      {"ptPointStyle", QStringLiteral("点类型"), imDropDownList, {QStringLiteral("圆点"), QStringLiteral("叉")},
       QStringLiteral("圆点")},
      {"ptLineWidth", QStringLiteral("线宽"), imDropDown, Range(0, 8), QStringLiteral("0")},
      {"ptLineStyle", QStringLiteral("线型"), imDropDownList,
       {QStringLiteral("实线"), QStringLiteral("虚线"), QStringLiteral("点线"), QStringLiteral("点划线"),
        QStringLiteral("双点划线")},
       QStringLiteral("实线")},
      {"ptStartMarkStyle", QStringLiteral("起点标记类型"), imDropDownList, Marks, QStringLiteral("箭头")},
      {"ptEndMarkStyle", QStringLiteral("终点标记类型"), imDropDownList, Marks, QStringLiteral("箭头")},
      {"ptStartMarkSize", QStringLiteral("起点标记尺寸"), imDropDown, Range(3, 20), QStringLiteral("8")},
      {"ptEndMarkSize", QStringLiteral("终点标记尺寸"), imDropDown, Range(3, 20), QStringLiteral("8")},
      {"ptFillStyle", QStringLiteral("填充类型"), imDropDownList,
       {QStringLiteral("实心"), QStringLiteral("无"), QStringLiteral("水平线"), QStringLiteral("垂直线"),
        QStringLiteral("反斜线"), QStringLiteral("斜线"), QStringLiteral("十字交叉线"), QStringLiteral("交叉线")},
       QStringLiteral("交叉线")},
      {"ptText", QStringLiteral("文本内容"), imEllipsis, {}, QString()},
      {"ptFontName", QStringLiteral("字体"), imDropDownList, {}, QStringLiteral("宋体")},
      {"ptFontHeight", QStringLiteral("字高"), imDropDown, Range(5, 20), QStringLiteral("12")},
      {"ptFontStyle", QStringLiteral("字型"), imDropDownList,
       {QStringLiteral("普通"), QStringLiteral("加粗"), QStringLiteral("倾斜"), QStringLiteral("加粗倾斜")},
       QStringLiteral("普通")},
      {"ptTransparent", QStringLiteral("透明"), imDropDown, {QStringLiteral("T"), QStringLiteral("F")},
       QStringLiteral("T")},
      {"ptTextBackColor", QStringLiteral("背景色"), imColorList, {}, QStringLiteral("0")},
      {"ptHorzAlignment", QStringLiteral("水平对齐"), imDropDownList,
       {QStringLiteral("左对齐"), QStringLiteral("右对齐"), QStringLiteral("居中")}, QStringLiteral("左对齐")},
      {"ptVertAlignment", QStringLiteral("垂直对齐"), imDropDownList,
       {QStringLiteral("上对齐"), QStringLiteral("下对齐"), QStringLiteral("居中")}, QStringLiteral("上对齐")},
  }};
  return T;
}

bool IsEnumerated(TVDEPropType T) { return VDEPropInfo(T).InputMode == imDropDownList && T != ptFontName; }

bool InRange(const QString& S, int ALow, int AHigh) {
  int V;
  return TryStrToInt(S, V) && V >= ALow && V <= AHigh;
}

bool FontKnown(const QString& AName) {
  if (AName.isEmpty()) return false;
  TKRNDrawFunc2d::MakeFont(AName, 0, 10);  // installs the substitutions of the system's font names
  return QFontDatabase::hasFamily(AName) || !QFont::substitutes(AName).isEmpty();
}

// Groups of rows and the item types that show them.
struct TGroup {
  std::vector<TVDEPropType> Rows;
  std::vector<int> Types;
};

const std::array<TGroup, 4>& Groups() {
  static const std::array<TGroup, 4> G = {{
      {{ptPointSize, ptPointStyle}, {itPoint}},
      {{ptLineWidth, ptLineStyle, ptStartMarkStyle, ptEndMarkStyle, ptStartMarkSize, ptEndMarkSize},
       {itLine, itArc, itCircle, itPolyline}},
      {{ptText, ptFontName, ptFontHeight, ptFontStyle, ptTransparent, ptTextBackColor, ptHorzAlignment,
        ptVertAlignment},
       {itText}},
      {{ptFillStyle}, {itHatch}},
  }};
  return G;
}

}  // namespace

const TVDEPropInfo& VDEPropInfo(TVDEPropType APropType) { return Infos()[size_t(APropType)]; }

bool VDEPropTypeByName(const QString& AName, TVDEPropType& APropType) {
  for (size_t I = 0; I < Infos().size(); ++I)
    if (AName == QLatin1String(Infos()[I].Name)) {
      APropType = TVDEPropType(I);
      return true;
    }
  return false;
}

QString VDEItemValueToText(TVDEPropType APropType, const QString& AItemValue) {
  if (APropType == ptTransparent) return AItemValue == QLatin1String("1") ? QStringLiteral("T") : QStringLiteral("F");
  if (IsEnumerated(APropType)) {
    const QStringList& V = VDEPropInfo(APropType).Values;
    const int I = StrToIntDef(AItemValue, -1);
    return I >= 0 && I < V.size() ? V[I] : AItemValue;
  }
  return AItemValue;
}

QString VDETextToItemValue(TVDEPropType APropType, const QString& AText) {
  if (APropType == ptTransparent) return AText == QLatin1String("T") ? QStringLiteral("1") : QStringLiteral("0");
  if (IsEnumerated(APropType)) return QString::number(VDEPropInfo(APropType).Values.indexOf(AText));
  return AText;
}

// ---- one property -----------------------------------------------------------

TVDEPropItem::TVDEPropItem(TVDEPropList* AOwner, TVDEPropType APropType)
    : FOwner(AOwner), FPropType(APropType), FValue(VDEPropInfo(APropType).Default) {}

bool TVDEPropItem::Validate(const QString& AValue, QString& AErrMsg) const {
  const QString V = Trim(AValue);
  const TVDEPropInfo& Info = VDEPropInfo(FPropType);
  auto Listed = [&](const char* AFormat) {
    if (Info.Values.contains(V)) return true;
    AErrMsg = QString::fromUtf8(AFormat).arg(V);
    return false;
  };
  auto Ranged = [&](int ALow, int AHigh, const QString& AMsg) {
    if (InRange(V, ALow, AHigh)) return true;
    AErrMsg = AMsg;
    return false;
  };
  switch (FPropType) {
    case ptExtData: return true;
    case ptColor:
    case ptTextBackColor: {
      qint64 C;
      if (TryStrToInt64(V, C) && C >= -2147483648LL && C <= 0xFFFFFFFFLL) return true;
      AErrMsg = QStringLiteral("非法颜色值");
      return false;
    }
    case ptPointSize: return Ranged(1, 32767, QStringLiteral("点尺寸值必须在(0, %1]之间").arg(32767));
    case ptPointStyle: return Listed("点类型[%1]非法");
    case ptFillStyle: return Listed("填充方式[%1]非法");
    case ptLineWidth: return Ranged(-100, 1000, QStringLiteral("线宽必须在[%1, %2]之间").arg(-100).arg(1000));
    case ptLineStyle: return Listed("线型[%1]非法");
    case ptStartMarkSize:
    case ptEndMarkSize: return Ranged(-255, 255, QStringLiteral("标记尺寸必须在[%1, %2]之间").arg(-255).arg(255));
    case ptStartMarkStyle:
    case ptEndMarkStyle: return Listed("标记类型[%1]非法");
    case ptFontHeight: {
      int H;
      if (TryStrToInt(V, H) && H >= -32768 && H <= 32767 && H != 0) return true;
      AErrMsg = QStringLiteral("字体高度必须在[%1, %2]之间，且不能为零").arg(-32768).arg(32767);
      return false;
    }
    case ptFontStyle: return Listed("字型[%1]非法");
    case ptHorzAlignment: return Listed("水平对齐方式[%1]非法");
    case ptVertAlignment: return Listed("垂直对齐方式[%1]非法");
    case ptText:
      if (!V.isEmpty()) return true;
      AErrMsg = QStringLiteral("文本不能为空");
      return false;
    case ptFontName:
      if (FontKnown(V)) return true;
      AErrMsg = QStringLiteral("字体[%1]非法").arg(V);
      return false;
    case ptTransparent:
      if (V.compare(QLatin1String("T"), Qt::CaseInsensitive) == 0 || V.compare(QLatin1String("F"), Qt::CaseInsensitive) == 0)
        return true;
      AErrMsg = QStringLiteral("透明属性值非法");
      return false;
  }
  return true;
}

void TVDEPropItem::SetValue(const QString& AValue) {
  if (AValue == FValue) return;
  const bool Text = FPropType == ptText || FPropType == ptExtData;
  if ((FPropType == ptText && AValue.isEmpty()) || (FPropType != ptText && AValue == VDEMixedMarker)) {
    FValue = AValue;
    return;
  }
  QString Msg;
  if (!Validate(AValue, Msg)) {
    ShowErrorBox(Msg);
    return;
  }
  FValue = Text ? AValue : Trim(AValue);
  if (FPropType == ptTransparent) FValue = FValue.toUpper();
  if (!FVisible || !FOwner->OnPropValChanged) return;
  if (FPropType == ptExtData || FPropType == ptText || FPropType == ptFontName)
    FOwner->OnPropValChanged(FPropType, FValue);
  else
    FOwner->OnPropValChanged(FPropType, QString::number(AsInteger()));
}

int TVDEPropItem::AsInteger() const {
  if (FPropType == ptTransparent) return FValue == QLatin1String("T") ? 1 : 0;
  if (IsEnumerated(FPropType)) return VDEPropInfo(FPropType).Values.indexOf(FValue);
  return int(StrToInt64(FValue));
}

void TVDEPropItem::SetAsInteger(int AValue) {
  if (FPropType == ptTransparent) SetValue(AValue == 1 ? QStringLiteral("T") : QStringLiteral("F"));
  else if (IsEnumerated(FPropType)) SetValue(VDEPropInfo(FPropType).Values.value(AValue));
  else SetValue(QString::number(AValue));
}

// ---- the list ---------------------------------------------------------------

TVDEPropList::TVDEPropList(TVDEPropValChangedEvent AOnPropValChanged) : OnPropValChanged(std::move(AOnPropValChanged)) {
  for (size_t I = 0; I < FList.size(); ++I) FList[I] = std::make_unique<TVDEPropItem>(this, TVDEPropType(I));
}

void TVDEPropList::CopyProps(const TVDEPropList& ASrc) {
  for (size_t I = 0; I < FList.size(); ++I) FList[I]->CopyProp(*ASrc.FList[I]);
}

void TVDEPropList::SetFilterItemTypeSet(const TDrawingItemTypeSet& AValue) {
  FFilterItemTypeSet = AValue;
  for (const TGroup& G : Groups()) {
    bool Shown = AValue.none();
    for (const int T : G.Types) Shown = Shown || AValue.test(size_t(T));
    for (const TVDEPropType R : G.Rows) FList[size_t(R)]->SetVisible(Shown);
  }
}

std::vector<TVDEPropType> TVDEPropList::ShownRows() const {
  std::vector<TVDEPropType> R = {ptExtData, ptColor};
  for (const TGroup& G : Groups())
    for (const TVDEPropType T : G.Rows)
      if (FList[size_t(T)]->Visible()) R.push_back(T);
  return R;
}

void TVDEPropList::LoadFromItems(const std::vector<TVectorDrawingItem*>& AItems) {
  TDrawingItemTypeSet Types;
  for (const TVectorDrawingItem* I : AItems) Types.set(size_t(I->ItemType()));
  for (size_t P = 0; P < FList.size(); ++P) {
    const TVDEPropType T = TVDEPropType(P);
    bool First = true;
    QString V;
    for (const TVectorDrawingItem* I : AItems) {
      if (!I->GetPropTypes().Contains(T)) continue;
      const QString S = VDEItemValueToText(T, I->GetPropValues(T));
      if (First) V = S;
      else if (S != V) V = VDEMixedMarker;
      First = false;
    }
    if (!First) FList[P]->SetRaw(V);
  }
  SetFilterItemTypeSet(Types);
}
