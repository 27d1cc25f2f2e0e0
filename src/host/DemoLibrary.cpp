#include "DemoLibrary.h"

#include <cmath>

#include "DrawSet.h"
#include "DrawSetConsts.h"
#include "DrawSetLibrary.h"
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <sys/stat.h>
#include <functional>
#include <vector>

namespace {

const char kMetricDiameters[] =
#include "MetricDiameters.inc"
    ;

constexpr TColor kWhite = 0xFFFFFF;
constexpr TColor kYellow = 0x00FFFF;
constexpr TColor kGreen = 0x00FF00;
constexpr TColor kGrey = 0x808080;

using TPts = std::vector<TKRNVector2d>;

// Builds one drawing; every method returns the new item's number.
class TDemoDrawing {
public:
  int Line(TKRNVector2d A, TKRNVector2d B, TColor AColor = kWhite) {
    return Put(new TVectorLine(&FD, FD.GenID(), AColor, 1, psSolid, 0, 0, msNone, msNone, A, B));
  }

  int Outline(const TPts& APts, bool AClosed = false, TColor AColor = kWhite) { return Poly(APts, AColor, 1, msNone, msNone, 0, AClosed); }

  int Bar(const TPts& APts, int AHooks = 2, bool AClosed = false) {
    return Poly(APts, kYellow, 2, AHooks >= 1 ? msHook : msNone, AHooks >= 2 ? msHook : msNone, 60, AClosed);
  }

  int Poly(const TPts& APts, TColor AColor, int AWidth, TMarkStyle AStart, TMarkStyle AEnd, int AMarkSize,
           bool AClosed) {
    auto* P = new TVectorPolyline(&FD);
    TKRNLines2d L;
    for (const TKRNVector2d& Pt : APts)
      L.List().AddLinePoint(Pt);
    if (AClosed)
      L.List().AddLinePoint(APts.front());
    P->SetPolyline(L);
    P->SetLineFields(FD.GenID(), AColor, AWidth, psSolid);
    P->SetStartMarkStyle(AStart);
    P->SetEndMarkStyle(AEnd);
    P->SetStartMarkSize(static_cast<qint16>(AMarkSize));
    P->SetEndMarkSize(static_cast<qint16>(AMarkSize));
    return Put(P);
  }

  // A filled 16-gon: hatch boundaries keep only straight vertices in the XML form.
  int Dot(TKRNVector2d AAt, double ARadius = 14) {
    TKRNLines2d Ring;
    for (int I = 0; I <= 16; ++I) {
      const double A = I * 2 * KRNPi / 16;
      Ring.List().Add(new TKRNLineVertex2d({AAt.X + ARadius * std::cos(A), AAt.Y + ARadius * std::sin(A)}));
    }
    return Put(new TVectorHatch(&FD, FD.GenID(), kYellow, bsSolid, TKRNPolygon2d(Ring)));
  }

  int Text(const QString& AText, TKRNVector2d AAt, int AHeight, TColor AColor = kWhite,
           THorzAlignment AHorz = haCenter) {
    return Put(new TVectorText(&FD, FD.GenID(), AColor, AText, AAt, 0, QStringLiteral("宋体"), AHeight, 0, AHorz,
                               vaCenter, true, 0, QString()));
  }

  int Concrete(const TKRNBox2d& ABox) {
    return Put(new TVectorHatch(&FD, FD.GenID(), kGrey, bsBDiagonal, TKRNPolygon2d(ABox)));
  }

  QByteArray Xml() {
    TBytesStream S;
    if (!FD.SaveToStream(S, sfXML))
      throw Exception(QStringLiteral("演示图形无法保存"));
    return S.Bytes();
  }

private:
  int Put(TVectorDrawingItem* AItem) {
    FD.Add(std::unique_ptr<TVectorDrawingItem>(AItem));
    return AItem->ID();
  }

  TVectorDrawing FD;
};

struct TDemoBar {
  QString Num;
  int PicID;
  QVector<int> Items;
  int InfoItem;       // -1: the notation is kept in the column
  QString Info;
  QString Script;
  QString Remark;
};

struct TDemoParam {
  QString Code;
  int Item;
  QString Value;
  QString Unit;
  QString Validate;
  QString InvalidMsg;
};

struct TDemoDrawSet {
  QString Name;
  int TypeID;
  QByteArray Drawing;
  std::vector<TDemoBar> Bars;
  std::vector<TDemoParam> Params;
};

QString S(const char* AText) { return QString::fromUtf8(AText); }

// A value shown on the drawing is the param's text item.
TDemoParam Param(TDemoDrawing& D, const char* ACode, const char* AValue, TKRNVector2d AAt, const char* AUnit,
                 const char* AValidate = "", const char* AInvalid = "") {
  const int Item = D.Text(S(AValue), AAt, 70, kGreen);
  return {S(ACode), Item, S(AValue), S(AUnit), S(AValidate), S(AInvalid)};
}

TDemoDrawSet BeamColumnJoint() {
  TDemoDrawing D;
  D.Outline({{-1500, 600}, {-250, 600}, {-250, 1800}});
  D.Outline({{1500, 600}, {250, 600}, {250, 1800}});
  D.Outline({{-1500, 0}, {-250, 0}, {-250, -1200}});
  D.Outline({{1500, 0}, {250, 0}, {250, -1200}});
  D.Line({-1500, 0}, {-1500, 600}, kGrey);
  D.Line({1500, 0}, {1500, 600}, kGrey);
  D.Text(S("框架梁柱中间节点"), {0, 2050}, 110);
  const int Top = D.Bar({{-1450, 555}, {1450, 555}}, 0);
  const int TopInfo = D.Text(S("2C25"), {-800, 680}, 80, kYellow);
  const int BotL = D.Bar({{-1450, 45}, {190, 45}, {190, 330}}, 0);
  const int BotR = D.Bar({{1450, 80}, {-190, 80}, {-190, 365}}, 0);
  const int BotInfo = D.Text(S("3C22"), {-800, -90}, 80, kYellow);
  const int ColL = D.Bar({{-205, -1150}, {-205, 1750}}, 0);
  const int ColR = D.Bar({{205, -1150}, {205, 1750}}, 0);
  const int Hoop = D.Bar({{-225, 20}, {225, 20}, {225, 580}, {-225, 580}}, 2, true);
  const int HoopInfo = D.Text(S("A10@100"), {700, 1100}, 80, kYellow);
  D.Line({225, 400}, {600, 1050}, kYellow);
  TDemoDrawSet R{S("框架梁柱中间节点"), 1, {}, {}, {}};
  R.Params = {Param(D, "hc", "500", {0, -1350}, "mm", "hc>=300", "柱截面宽度不得小于300"),
              Param(D, "hb", "600", {-1700, 300}, "mm", "hb>=300", "梁高不得小于300"),
              Param(D, "ln", "1250", {-850, 250}, "mm"),
              Param(D, "lab", "880", {800, -300}, "mm", "lab>0", "锚固长度必须大于0"),
              Param(D, "c", "25", {-1700, 560}, "mm", "c>=15 and c<=50", "保护层厚度应在15到50之间")};
  R.Bars = {
      {S("梁上部通长筋"), 1, {Top}, TopInfo, QString(), S("l=2*ln+hc-2*c\ncd=l\ncnt=2\nmainend"), S("贯通节点")},
      {S("梁下部左筋"), 601, {BotL}, BotInfo, QString(),
       S("single la\nla=lab\nif la<hc-c\nla=hc-c\nendif\nl1=ln+la\nl2=15*zj\ncd=l1+l2\ncnt=3\nmainend"),
       S("伸入节点弯折15d")},
      {S("梁下部右筋"), 601, {BotR}, -1, S("3C22"),
       S("l1=ln+lab\nl2=15*zj\ncd=l1+l2\ncnt=3\nmainend"), QString()},
      {S("柱纵筋"), 1, {ColL, ColR}, -1, S("4C25"),
       S("int i\ncd=0\nfrom 1 to 2\ncd=cd+hb+1200\nendfrom\ncnt=4\nmainend"), S("两层通长")},
      {S("节点箍筋"), 133, {Hoop}, HoopInfo, QString(),
       S("int n\nsingle y\nn=0\ny=50\ndo y<=hb-50\nn=n+1\ny=y+jj\nloop\ncnt=n\nl1=hc-2*c\nl2=hc-2*c\n"
         "cd=2*(l1+l2)+2*11.9*zj\nmainend"),
       S("节点核心区")}};
  R.Drawing = D.Xml();
  return R;
}

TDemoDrawSet TopEndJoint() {
  TDemoDrawing D;
  D.Outline({{-1800, 0}, {-250, 0}, {-250, -1600}});
  D.Outline({{-1800, 700}, {250, 700}, {250, -1600}});
  D.Line({-1800, 0}, {-1800, 700}, kGrey);
  D.Text(S("框架顶层端节点"), {-700, 950}, 110);
  const int Top = D.Bar({{-1750, 660}, {210, 660}, {210, -300}}, 0);
  const int TopInfo = D.Text(S("4C22"), {-1000, 780}, 80, kYellow);
  const int Bot = D.Bar({{-1750, 40}, {150, 40}, {150, 380}}, 0);
  const int Col = D.Bar({{-210, -1550}, {-210, 660}, {80, 660}}, 0);
  const int ColInfo = D.Text(S("2C25"), {-450, -800}, 80, kYellow);
  TDemoDrawSet R{S("框架顶层端节点"), 1, {}, {}, {}};
  R.Params = {Param(D, "hc", "500", {0, -1750}, "mm", "hc>=300", "柱截面宽度不得小于300"),
              Param(D, "hb", "700", {-1950, 350}, "mm"),
              Param(D, "ln", "1550", {-1000, 350}, "mm"),
              Param(D, "lab", "770", {600, -300}, "mm", "lab>0", "锚固长度必须大于0"),
              Param(D, "c", "25", {-1950, 650}, "mm")};
  R.Bars = {
      {S("梁上部筋"), 536, {Top}, TopInfo, QString(),
       S("l1=ln+hc-c\nl2=1.7*lab\nif l2<hb-c\nl2=hb-c\nendif\ncd=l1+l2\ncnt=4\nmainend"), S("柱外侧搭接1.7lab")},
      {S("梁下部筋"), 601, {Bot}, -1, S("2C20"), S("l1=ln+hc-c-zj\nl2=15*zj\ncd=l1+l2\ncnt=2\nmainend"),
       QString()},
      {S("柱内侧纵筋"), 601, {Col}, ColInfo, QString(), S("l1=1600+hb-c\nl2=12*zj\ncd=l1+l2\ncnt=2\nmainend"),
       S("柱顶弯折12d")}};
  R.Drawing = D.Xml();
  return R;
}

TDemoDrawSet SlabEdge() {
  TDemoDrawing D;
  D.Outline({{-300, 0}, {1800, 0}, {1800, 120}, {0, 120}, {0, 500}, {-300, 500}, {-300, -400}, {0, -400}, {0, 0}});
  D.Concrete({{-300, -400}, {0, 500}});
  D.Text(S("板边支座"), {700, 750}, 110);
  const int TopBar = D.Bar({{-250, 45}, {-250, 95}, {1750, 95}}, 0);
  const int TopInfo = D.Text(S("C10@150"), {900, 260}, 70, kYellow);
  const int BotBar = D.Bar({{-150, 25}, {1750, 25}}, 0);
  const int BotInfo = D.Text(S("C8@200"), {900, -110}, 70, kYellow);
  std::vector<int> Dots;
  for (int X = 200; X <= 1600; X += 280)
    Dots.push_back(D.Dot({double(X), 42}, 10));
  TDemoDrawSet R{S("板边支座"), 2, {}, {}, {}};
  R.Params = {Param(D, "h", "120", {1950, 60}, "mm", "h>=80", "板厚不得小于80"),
              Param(D, "bw", "300", {-150, 620}, "mm"),
              Param(D, "ln", "3600", {1000, -250}, "mm", "ln>0", "板跨必须大于0"),
              Param(D, "c", "15", {-450, 60}, "mm")};
  QVector<int> DistItems(Dots.begin(), Dots.end());
  R.Bars = {
      {S("支座负筋"), 536, {TopBar}, TopInfo, QString(),
       S("l1=ln/4+bw-c\nl2=h-2*c\ncd=l1+l2\ncnt=ceil(ln/jj)+1\nmainend"), S("伸入板内ln/4")},
      {S("板底筋"), 1, {BotBar}, BotInfo, QString(), S("l=ln+bw-c\ncd=l\ncnt=ceil(ln/jj)+1\nmainend"), QString()},
      {S("分布筋"), 1, DistItems, -1, S("A6@250"), S("l=ln\ncd=l\ncnt=ceil(ln/4/jj)+1\nmainend"), S("负筋下方")}};
  R.Drawing = D.Xml();
  return R;
}

TDemoDrawSet PadFooting() {
  TDemoDrawing D;
  D.Outline({{-1200, 0}, {1200, 0}, {1200, 400}, {300, 600}, {300, 1500}});
  D.Outline({{-1200, 0}, {-1200, 400}, {-300, 600}, {-300, 1500}});
  D.Outline({{-1300, -100}, {1300, -100}, {1300, 0}});
  D.Line({-1300, -100}, {-1300, 0});
  D.Text(S("独立基础"), {0, 1750}, 110);
  const int MeshX = D.Bar({{-1150, 100}, {-1150, 50}, {1150, 50}, {1150, 100}}, 0);
  const int MeshInfo = D.Text(S("C14@150"), {-600, -250}, 70, kYellow);
  const int ColL = D.Bar({{-250, 1450}, {-250, 60}, {-550, 60}}, 0);
  const int ColR = D.Bar({{250, 1450}, {250, 60}, {550, 60}}, 0);
  const int ColInfo = D.Text(S("8C20"), {600, 1100}, 70, kYellow);
  const int Hoop = D.Bar({{-270, 350}, {270, 350}, {270, 500}, {-270, 500}}, 2, true);
  TDemoDrawSet R{S("阶形独立基础"), 3, {}, {}, {}};
  R.Params = {Param(D, "b", "2400", {0, -400}, "mm", "b>=600", "基础宽度不得小于600"),
              Param(D, "hj", "600", {1450, 300}, "mm"),
              Param(D, "hc", "600", {0, 1300}, "mm"),
              Param(D, "c", "40", {-1450, 50}, "mm", "c>=40", "基础保护层不得小于40")};
  R.Bars = {
      {S("底板钢筋网"), 1, {MeshX}, MeshInfo, QString(),
       S("single n\nl=b-2*c\nif b>=2500\nl=0.9*b\nendif\ncd=l\nn=ceil((b-2*75)/jj)+1\ncnt=2*n\nmainend"),
       S("两个方向")},
      {S("柱插筋"), 601, {ColL, ColR}, ColInfo, QString(),
       S("l1=hj-c+1200\nl2=6*zj\nif l2<150\nl2=150\nendif\ncd=l1+l2\ncnt=8\nmainend"), S("底部弯折")},
      {S("基础内箍筋"), 133, {Hoop}, -1, S("A8@500"),
       S("l1=hc-2*c\nl2=hc-2*c\ncd=2*(l1+l2)+2*11.9*zj\ncnt=2\nmainend"), S("不少于两道")}};
  R.Drawing = D.Xml();
  return R;
}

TDemoDrawSet StripFooting() {
  TDemoDrawing D;
  D.Outline({{-900, 0}, {900, 0}, {900, 250}, {200, 450}, {200, 900}, {-200, 900}, {-200, 450}, {-900, 250}}, true);
  D.Outline({{-1000, -100}, {1000, -100}, {1000, 0}, {-1000, 0}}, true);
  D.Text(S("条形基础"), {0, 1150}, 110);
  const int Main = D.Bar({{-860, 50}, {860, 50}}, 2);
  const int MainInfo = D.Text(S("C12@150"), {0, -230}, 70, kYellow);
  std::vector<int> Dist;
  for (int X = -750; X <= 750; X += 250)
    Dist.push_back(D.Dot({double(X), 74}, 9));
  TDemoDrawSet R{S("墙下条形基础"), 3, {}, {}, {}};
  R.Params = {Param(D, "b", "1800", {0, -400}, "mm", "b>=600", "基础宽度不得小于600"),
              Param(D, "l", "6000", {1200, 500}, "mm", "l>0", "基础长度必须大于0"),
              Param(D, "c", "40", {-1150, 50}, "mm"),
              Param(D, "w", "400", {0, 650}, "mm", "w>0", "墙厚必须大于0"),
              Param(D, "w2", "700", {550, 380}, "mm")};
  // The wall width w and the step width w2 (names a rename of w must tell apart).
  R.Bars = {{S("受力筋"), 64, {Main}, MainInfo, QString(),
             S("cd=b-2*c+2*6.25*zj\nif cd<w+2*w2-2*c\ncd=w+2*w2-2*c\nendif\ncnt=ceil(l/jj)+1\nmainend"), QString()},
            {S("分布筋"), 1, QVector<int>(Dist.begin(), Dist.end()), -1, S("A8@250"),
             S("single s\ns=w2-c\ncd=l-2*c\ncnt=ceil((b-2*c)/jj)+1\nif W>s\ncnt=cnt+1\nendif\nmainend"),
             S("沿基础长向")}};
  R.Drawing = D.Xml();
  return R;
}

TDemoDrawSet Stair() {
  TDemoDrawing D;
  TPts Steps{{0, 0}};
  for (int I = 0; I < 6; ++I) {
    Steps.push_back({I * 280.0, (I + 1) * 165.0});
    Steps.push_back({(I + 1) * 280.0, (I + 1) * 165.0});
  }
  Steps.push_back({1680 + 400, 990});
  Steps.push_back({1680 + 400, 870});
  Steps.push_back({1680, 870});
  Steps.push_back({150, -120});
  Steps.push_back({-400, -120});
  Steps.push_back({-400, 0});
  D.Outline(Steps, true);
  D.Text(S("板式楼梯"), {900, 1300}, 110);
  const int Bottom = D.Bar({{-380, -90}, {150, -90}, {1700, 930}, {2050, 930}}, 0);
  const int BottomInfo = D.Text(S("C12@120"), {1100, 150}, 70, kYellow);
  const int TopL = D.Bar({{-100, -20}, {-100, 30}, {600, 430}}, 0);
  const int TopR = D.Bar({{1200, 820}, {1850, 945}, {1850, 895}}, 0);
  const int TopInfo = D.Text(S("C10@150"), {450, 600}, 70, kYellow);
  TDemoDrawSet R{S("AT型板式楼梯"), 4, {}, {}, {}};
  R.Params = {Param(D, "n", "6", {900, -350}, "", "n>=3", "踏步数不得少于3"),
              Param(D, "bs", "280", {140, 380}, "mm"),
              Param(D, "hs", "165", {-150, 250}, "mm"),
              Param(D, "t", "120", {1100, 500}, "mm", "t>=100", "梯板厚度不得小于100"),
              Param(D, "bw", "1200", {2300, 500}, "mm")};
  R.Bars = {
      {S("梯板下部纵筋"), 705, {Bottom}, BottomInfo, QString(),
       S("single k\nk=sqrt(bs*bs+hs*hs)/bs\nl1=n*bs*k\nif l1<1000\nl1=1000\nendif\nl2=5*zj\ncd=l1+2*l2\ncnt=ceil(bw/jj)+1\nmainend"),
       S("斜长系数k")},
      {S("梯板上部纵筋"), 536, {TopL, TopR}, TopInfo, QString(),
       S("single k\nk=sqrt(bs*bs+hs*hs)/bs\nl1=n*bs*k/4\nl2=15*zj\ncd=l1+l2\ncnt=2*(ceil(bw/jj)+1)\nmainend"),
       S("两端各一根")},
      {S("梯板分布筋"), 1, {}, -1, S("A8@250"),
       S("int i\ncnt=0\ni=0\ndo i<n\ncnt=cnt+1\ni=i+1\nloop\ncd=bw-2*15\nmainend"), S("每踏步一根")}};
  R.Drawing = D.Xml();
  return R;
}

// ---------------------------------------------------------------------------
// Bar pictures

enum TShape { shStraight, shL, shU, shHoop, shCrank };

struct TPicture {
  int ID;
  TShape Shape;
  int Hooks;        // 0, 1 or 2
  int TypeID;       // custom type, 0 for system pictures
  int CommonOrder;
  const char* ShapeCode;
  const char* Name;
};

// Returns the drawing and fills the picture's params (code, item number).
QByteArray PictureDrawing(const TPicture& APic, std::vector<std::pair<QString, int>>& AParams) {
  TDemoDrawing D;
  const auto Label = [&](const char* ACode, TKRNVector2d AAt) {
    AParams.push_back({S(ACode), D.Text(S(ACode), AAt, 80, kGreen)});
  };
  switch (APic.Shape) {
    case shStraight:
      D.Bar({{0, 0}, {1000, 0}}, APic.Hooks);
      Label("L", {500, 90});
      break;
    case shL:
      D.Bar({{0, 300}, {0, 0}, {1000, 0}}, APic.Hooks);
      Label("L1", {500, 90});
      Label("L2", {-110, 150});
      break;
    case shU:
      D.Bar({{0, 300}, {0, 0}, {1000, 0}, {1000, 300}}, APic.Hooks);
      Label("L1", {500, 90});
      Label("L2", {-110, 150});
      break;
    case shHoop:
      D.Bar({{0, 0}, {800, 0}, {800, 300}, {0, 300}}, 2, true);
      Label("L1", {400, -90});
      Label("L2", {900, 150});
      break;
    case shCrank:
      D.Bar({{0, 0}, {300, 0}, {600, 300}, {1000, 300}}, APic.Hooks);
      Label("L1", {150, -90});
      Label("L2", {800, 390});
      Label("H", {560, 120});
      break;
  }
  return D.Xml();
}

const std::vector<TPicture>& Pictures() {
  static const std::vector<TPicture> L = {
      // the BS page
      {1, shStraight, 0, 0, 1, "00", "直筋"},
      {601, shL, 0, 0, 2, "11", "L形筋"},
      {946, shL, 1, 0, 0, "12", "L形筋一端弯钩"},
      {536, shU, 0, 0, 3, "21", "U形筋"},
      {64, shStraight, 2, 0, 0, "01", "两端弯钩直筋"},
      {132, shHoop, 2, 0, 0, "51", "封闭箍筋"},
      {544, shU, 2, 0, 0, "22", "U形筋两端弯钩"},
      {833, shCrank, 0, 0, 0, "41", "弯起筋"},
      {523, shL, 2, 0, 0, "13", "L形筋两端弯钩"},
      {705, shCrank, 1, 0, 0, "42", "弯起筋一端弯钩"},
      {486, shStraight, 1, 0, 0, "02", "一端弯钩直筋"},
      {947, shU, 1, 0, 0, "23", "U形筋一端弯钩"},
      {949, shCrank, 2, 0, 0, "43", "弯起筋两端弯钩"},
      {903, shHoop, 2, 0, 0, "52", "矩形箍筋"},
      {944, shStraight, 0, 0, 0, "03", "短直筋"},
      {945, shL, 0, 0, 0, "14", "长L形筋"},
      // the housing authority page
      {948, shHoop, 2, 0, 0, "99", "房屋署箍筋"},
      {356, shU, 2, 0, 0, "99", "房屋署U形筋"},
      // system pictures by bend and hook
      {2, shStraight, 1, 0, 0, "99", "直筋一端弯钩"},
      {3, shStraight, 2, 0, 0, "99", "直筋两端弯钩"},
      {4, shL, 0, 0, 0, "99", "一弯筋"},
      {5, shL, 1, 0, 0, "99", "一弯筋一端弯钩"},
      {6, shL, 2, 0, 0, "99", "一弯筋两端弯钩"},
      {7, shU, 0, 0, 0, "99", "二弯筋"},
      {8, shU, 1, 0, 0, "99", "二弯筋一端弯钩"},
      {9, shU, 2, 0, 0, "99", "二弯筋两端弯钩"},
      {133, shHoop, 2, 0, 4, "99", "箍筋"},
      {10, shCrank, 0, 0, 0, "99", "弯起筋"},
      {11, shCrank, 1, 0, 0, "99", "弯起筋一端弯钩"},
      {12, shCrank, 2, 0, 0, "99", "弯起筋两端弯钩"},
      // custom pictures
      {10001, shHoop, 2, 1, 0, "99", "异形箍筋一"},
      {10002, shHoop, 2, 1, 0, "99", "异形箍筋二"},
      {10003, shCrank, 0, 2, 0, "99", "弧形弯起筋"},
      {10004, shU, 0, 2, 0, "99", "弧形U形筋"},
  };
  return L;
}

int BendOf(TShape AShape) {
  switch (AShape) {
    case shStraight: return 0;
    case shL: return 1;
    case shU: return 2;
    case shHoop: return 3;
    case shCrank: return 4;
  }
  return 0;
}

void FillCatalogue(TLibraryDb& ADb) {
  ADb.Exec(S("INSERT INTO BendTypes VALUES (0, '直筋'), (1, '一弯'), (2, '二弯'), (3, '箍筋'), (4, '弯起')"));
  ADb.Exec(S("INSERT INTO HookTypes VALUES (0, '无弯钩'), (1, '一端弯钩'), (2, '两端弯钩')"));
  ADb.Exec(S("INSERT INTO BarClasses VALUES (1, '受力筋'), (2, '构造筋'), (3, '箍筋'), (4, '分布筋')"));
  ADb.Exec(S("INSERT INTO CustomBarPicTypes VALUES (1, '异形箍筋'), (2, '弧形钢筋')"));
  for (const TPicture& P : Pictures()) {
    std::vector<std::pair<QString, int>> Params;
    const QByteArray Drawing = PictureDrawing(P, Params);
    ADb.Exec(S("INSERT INTO BarPics VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
             {P.ID, Drawing, S(P.Name), P.TypeID, BendOf(P.Shape), P.Shape == shHoop ? 2 : P.Hooks, P.CommonOrder,
              S(P.ShapeCode)});
    int ParamID = 0;
    for (const auto& [Code, Item] : Params)
      ADb.Exec(S("INSERT INTO BarPicParams VALUES (?, ?, ?, 'mm', ?, ?, ?, 3, ?)"),
               {P.ID, ParamID++, Code, Code + S(">0"), Code + S("必须大于0"), Item, Code == S("H")});
  }
  ADb.Exec(S("INSERT INTO CommonBarPics VALUES (1, 100), (133, 101)"));
}

}  // namespace

void FillDemoLibrary(TDrawSetLibrary& ALibrary) {
  TLibraryDb& Db = ALibrary.Db();
  Db.Exec(S("INSERT INTO DrawSetTypes VALUES (1, '梁柱节点', 1), (2, '板', 2), (3, '基础', 3), (4, '楼梯', 4)"));
  Db.Exec(S("INSERT INTO DiamDicts VALUES ('metric', ?)"), {S(kMetricDiameters)});
  FillCatalogue(Db);

  // The draw sets go through the model and the server's save, in the Chinese region.
  const int SavedRegion = RegionCode;
  SetRegionSettings(1);
  TClientDataSet SetDS, BarDS, ParamDS;
  SetDS.SetData(DataSvr::GetDrawSets(ALibrary));
  BarDS.SetData(DataSvr::GetDrawSetBars(ALibrary, -1));
  ParamDS.SetData(DataSvr::GetDrawSetParams(ALibrary, -1, CalcRuleID));
  TDrawSets Sets(&SetDS, &BarDS, &ParamDS);
  const TDemoDrawSet All[] = {BeamColumnJoint(), TopEndJoint(), SlabEdge(), PadFooting(), StripFooting(), Stair()};
  for (const TDemoDrawSet& Demo : All) {
    TDrawSet* Set = Sets.Add(Sets.MaxID() + 1, Demo.Name, Demo.TypeID, true);
    TBytesStream Drawing(Demo.Drawing);
    Set->SetVectorDrawing(Drawing);
    for (const TDemoBar& B : Demo.Bars) {
      TDrawSetBar* Bar = Set->Bars().Add(Set->ID(), Set->Bars().GetMaxBarID(Set->ID()) + 1, B.PicID, B.Num,
                                         TDrawSetInfoHandler::MakeBarVDID(B.Items), B.InfoItem, QString(), B.Remark,
                                         true);
      Bar->SetBarInfo(B.Info);
      Bar->SetCalcProgram(B.Script);
    }
    for (const TDemoParam& P : Demo.Params) {
      TDrawSetParam* Param = Set->Params().Add(Set->ID(), Set->Params().GetMaxParamID(Set->ID()) + 1, P.Item, P.Code,
                                               dtUnknowParamType, true);
      Param->SetParamVal(P.Value);
      Param->SetUnit(P.Unit);
      Param->SetValidateExpr(P.Validate);
      Param->SetInvalidMsg(P.InvalidMsg);
    }
  }
  QString Err;
  const bool Saved = DataSvr::SaveDrawSets(ALibrary, {TDataPacket(), SetDS.Delta(), BarDS.Delta(), ParamDS.Delta()},
                                           CalcRuleID, Err);
  SetRegionSettings(SavedRegion);
  if (!Saved)
    throw Exception(Err);

  // Every region sees the same content: drawings, scripts, notations and params.
  TLibraryTransaction T(Db);
  for (const QString& C : TDrawSetLibrary::VectorDrawingColumns())
    if (C != S("VectorDrawing_Chs"))
      Db.Exec(S("UPDATE DrawSets SET %1 = VectorDrawing_Chs").arg(C));
  for (const QString& C : TDrawSetLibrary::CalcProgramColumns())
    if (C != S("CalcProgram_Chs"))
      Db.Exec(S("UPDATE DrawSetBars SET %1 = CalcProgram_Chs").arg(C));
  for (const QString& C : TDrawSetLibrary::BarInfoColumns())
    if (C != S("BarInfo_CHS"))
      Db.Exec(S("UPDATE DrawSetBars SET %1 = BarInfo_CHS").arg(C));
  for (int Region : {0, 2, 4, 6, 7, 8, 9, 10, 13, 20}) {
    const int Rule = CalcRuleIDOfRegion(Region);
    Db.Exec(S("INSERT INTO DrawSetParams SELECT CAST(? AS INTEGER), DrawSetID, ParamID, ParamVDID, ParamCode,"
              " DataType, ValidateExpr, InvalidMsg, OrderNum, ParamVal, Unit FROM DrawSetParams WHERE CalcRuleID = 0"
              " ON CONFLICT DO NOTHING"),
            {Rule});
  }
  T.Commit();
}

namespace {

// Builds a library at ALocation with AFill, all or nothing: a file is built beside the
// target and moved over it at the end; a database gets it in one transaction.
void BuildLibrary(const QString& ALocation, bool AForce, const std::function<void(TDrawSetLibrary&)>& AFill) {
  if (IsServerLocation(ALocation)) {
    std::unique_ptr<TLibraryDb> Db = ConnectLibraryDb(ALocation, false);
    TLibraryDb& Ref = *Db;
    std::shared_ptr<TDrawSetLibrary> Library;  // outlives the transaction: it owns the connection
    TLibraryTransaction T(Ref);
    Library = TDrawSetLibrary::Create(std::move(Db), AForce);
    AFill(*Library);
    T.Commit();
    return;
  }
  // names go to the system by their exact bytes; QFileInfo only joins strings here
  const QFileInfo Target(ALocation);
  const TFileStatus Status = FileStatus(ALocation);
  if (Status.Exists && !AForce)
    throw Exception(S("文件已存在：%1（用 --force 覆盖）").arg(ALocation));
  if (Status.Exists && !Status.IsFile)
    throw Exception(S("不是文件：%1").arg(ALocation));
  if (!FileStatus(Target.absolutePath()).IsDir)
    throw Exception(S("目录不存在：%1").arg(Target.absolutePath()));
  const QString Temp = Target.absoluteFilePath() + S(".init-tmp");
  RemoveFileRaw(Temp);
  try {
    {
      std::shared_ptr<TDrawSetLibrary> Library = TDrawSetLibrary::Create(Temp);
      AFill(*Library);
    }
    if (!RenameFileRaw(Temp, Target.absoluteFilePath()))
      throw Exception(S("无法写入 %1").arg(ALocation));
  } catch (...) {
    RemoveFileRaw(Temp);
    throw;
  }
}

}  // namespace

void CreateDemoLibrary(const QString& ALocation, bool AForce) { BuildLibrary(ALocation, AForce, FillDemoLibrary); }

qint64 CopyLibrary(const QString& ASource, const QString& ATarget, bool AForce) {
  const std::shared_ptr<TDrawSetLibrary> Source = TDrawSetLibrary::Open(ASource);
  struct stat A {}, B {};
  const bool SameFile = !IsServerLocation(ASource) && ::stat(EncodeFileName(ASource).constData(), &A) == 0 &&
                        ::stat(EncodeFileName(ATarget).constData(), &B) == 0 && A.st_dev == B.st_dev &&
                        A.st_ino == B.st_ino;
  if (ASource == ATarget || SameFile)
    throw Exception(S("源图集库和目标图集库是同一个：%1").arg(Source->Db().Location()));
  qint64 Rows = 0;
  BuildLibrary(ATarget, AForce, [&](TDrawSetLibrary& ATargetLib) { Rows = Source->CopyRowsTo(ATargetLib); });
  return Rows;
}
