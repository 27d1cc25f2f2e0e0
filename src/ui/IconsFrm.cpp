#include "IconsFrm.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <cmath>

namespace {

TIconsForm* GInstance = nullptr;

constexpr int Side = 20;

void Arc(QPainter& G, bool ALarge, bool AClockwise) {
  const QRectF R = ALarge ? QRectF(3, 3, 14, 14) : QRectF(2, 6, 16, 16);
  const int Start = ALarge ? 300 : 30, Span = ALarge ? 300 : 120;
  G.drawArc(R, Start * 16, Span * 16);
  // The arrow head shows the direction.
  const double A = (AClockwise ? Start : Start + Span) * M_PI / 180.0;
  const QPointF P(R.center().x() + R.width() / 2 * std::cos(A), R.center().y() - R.height() / 2 * std::sin(A));
  G.drawEllipse(P, 1.5, 1.5);
}

void Magnifier(QPainter& G) {
  G.drawEllipse(QRectF(3, 3, 10, 10));
  G.drawLine(QPointF(11.5, 11.5), QPointF(17, 17));
}

void Arrow(QPainter& G, QPointF AFrom, QPointF ATo) {
  G.drawLine(AFrom, ATo);
  const QPointF D = ATo - AFrom;
  const double L = std::hypot(D.x(), D.y());
  const QPointF U = D / L, N(-U.y(), U.x());
  G.drawLine(ATo, ATo - U * 4 + N * 3);
  G.drawLine(ATo, ATo - U * 4 - N * 3);
}

void Hand(QPainter& G) {
  G.drawRoundedRect(QRectF(5, 8, 10, 9), 2, 2);
  for (int X : {6, 9, 12}) G.drawLine(X, 8, X, 3);
  G.drawLine(15, 11, 17, 8);
}

// Draws the picture of one action; false when it has none.
bool Paint(const QString& N, QPainter& G) {
  const QPen Ink(QColor(20, 40, 120), 1.6);
  const QPen Red(QColor(190, 30, 30), 1.6);
  G.setPen(Ink);
  if (N == QLatin1String("acSelect")) {
    QPainterPath P;
    P.moveTo(5, 2); P.lineTo(5, 16); P.lineTo(9, 12); P.lineTo(12, 18); P.lineTo(14, 17); P.lineTo(11, 11);
    P.lineTo(16, 11); P.closeSubpath();
    G.setBrush(Qt::white);
    G.drawPath(P);
  } else if (N == QLatin1String("acDrawPoint")) {
    G.setBrush(QColor(20, 40, 120));
    G.drawEllipse(QPointF(10, 10), 2.5, 2.5);
  } else if (N == QLatin1String("acDrawLine")) {
    G.drawLine(3, 17, 17, 3);
  } else if (N == QLatin1String("acDrawACSArc") || N == QLatin1String("acDrawArc")) {
    Arc(G, false, false);
  } else if (N == QLatin1String("acDrawCSArc")) {
    Arc(G, false, true);
  } else if (N == QLatin1String("acDrawACLArc")) {
    Arc(G, true, false);
  } else if (N == QLatin1String("acDrawCLArc")) {
    Arc(G, true, true);
  } else if (N == QLatin1String("acDraw3PArc")) {
    G.drawArc(QRectF(2, 6, 16, 16), 30 * 16, 120 * 16);
    G.setPen(Red);
    for (const QPointF P : {QPointF(3.5, 10), QPointF(10, 6), QPointF(16.5, 10)}) G.drawEllipse(P, 1.2, 1.2);
  } else if (N == QLatin1String("acDrawCircle")) {
    G.drawEllipse(QRectF(3, 3, 14, 14));
  } else if (N == QLatin1String("acDrawRect")) {
    G.drawRect(QRectF(3, 5, 14, 10));
  } else if (N == QLatin1String("acDrawPolygon")) {
    QPolygonF P;
    for (int I = 0; I < 6; ++I) P << QPointF(10 + 7 * std::cos(I * M_PI / 3), 10 + 7 * std::sin(I * M_PI / 3));
    G.drawPolygon(P);
  } else if (N == QLatin1String("acDrawText")) {
    QFont F = G.font();
    F.setPixelSize(15);
    F.setBold(true);
    G.setFont(F);
    G.drawText(QRectF(0, 0, Side, Side), Qt::AlignCenter, QStringLiteral("A"));
  } else if (N == QLatin1String("acDrawHatch")) {
    G.drawRect(QRectF(3, 3, 14, 14));
    for (int K = 0; K < 4; ++K) G.drawLine(QPointF(3, 7 + 4 * K), QPointF(7 + 4 * K, 3));
  } else if (N == QLatin1String("acDrawDimension")) {
    Arrow(G, {10, 10}, {2, 10});
    Arrow(G, {10, 10}, {18, 10});
    G.drawLine(2, 4, 2, 16);
    G.drawLine(18, 4, 18, 16);
  } else if (N == QLatin1String("acErase") || N == QLatin1String("acDelete")) {
    G.setPen(Red);
    G.drawLine(4, 4, 16, 16);
    G.drawLine(16, 4, 4, 16);
  } else if (N == QLatin1String("acDuplicate") || N == QLatin1String("acCopy")) {
    G.drawRect(QRectF(3, 3, 9, 9));
    G.drawRect(QRectF(8, 8, 9, 9));
  } else if (N == QLatin1String("acMirror")) {
    G.drawPolygon(QPolygonF({QPointF(8, 4), QPointF(8, 16), QPointF(2, 16)}));
    G.drawPolygon(QPolygonF({QPointF(12, 4), QPointF(12, 16), QPointF(18, 16)}));
    G.setPen(QPen(QColor(190, 30, 30), 1, Qt::DashLine));
    G.drawLine(10, 1, 10, 19);
  } else if (N == QLatin1String("acMove")) {
    Arrow(G, {10, 10}, {10, 2});
    Arrow(G, {10, 10}, {10, 18});
    Arrow(G, {10, 10}, {2, 10});
    Arrow(G, {10, 10}, {18, 10});
  } else if (N == QLatin1String("acRotate")) {
    G.drawArc(QRectF(3, 3, 14, 14), 90 * 16, 270 * 16);
    Arrow(G, {6, 3.5}, {10, 3});
  } else if (N == QLatin1String("acExtend")) {
    G.drawLine(16, 2, 16, 18);
    G.setPen(Red);
    Arrow(G, {3, 10}, {15, 10});
  } else if (N == QLatin1String("acTrim")) {
    G.drawLine(10, 2, 10, 18);
    G.drawLine(3, 10, 10, 10);
    G.setPen(QPen(QColor(190, 30, 30), 1.6, Qt::DotLine));
    G.drawLine(10, 10, 18, 10);
  } else if (N == QLatin1String("acBreak")) {
    G.drawLine(2, 10, 8, 10);
    G.drawLine(12, 10, 18, 10);
    G.setPen(Red);
    G.drawLine(8, 6, 12, 14);
  } else if (N == QLatin1String("acMerge")) {
    G.drawLine(2, 10, 18, 10);
    G.setPen(Red);
    G.drawEllipse(QPointF(10, 10), 2, 2);
  } else if (N == QLatin1String("acStretch")) {
    G.drawRect(QRectF(3, 6, 8, 8));
    G.setPen(Red);
    Arrow(G, {11, 10}, {18, 10});
  } else if (N == QLatin1String("acOffset")) {
    G.drawLine(3, 15, 15, 3);
    G.drawLine(6, 18, 18, 6);
  } else if (N == QLatin1String("acZoomAll")) {
    Magnifier(G);
    G.drawRect(QRectF(6, 6, 4, 4));
  } else if (N == QLatin1String("acZoomRunTime")) {
    Magnifier(G);
    G.drawLine(8, 5, 8, 11);
    G.drawLine(5, 8, 11, 8);
  } else if (N == QLatin1String("acZoomIn")) {
    Magnifier(G);
    G.drawLine(8, 5, 8, 11);
    G.drawLine(5, 8, 11, 8);
  } else if (N == QLatin1String("acZoomOut")) {
    Magnifier(G);
    G.drawLine(5, 8, 11, 8);
  } else if (N == QLatin1String("acZoomWin")) {
    Magnifier(G);
    G.setPen(QPen(QColor(190, 30, 30), 1, Qt::DashLine));
    G.drawRect(QRectF(1, 1, 18, 18));
  } else if (N == QLatin1String("acPanRunTime") || N == QLatin1String("acPanPoint") || N == QLatin1String("acPanCenter")) {
    Hand(G);
  } else if (N == QLatin1String("acPanLeft")) {
    Arrow(G, {17, 10}, {3, 10});
  } else if (N == QLatin1String("acPanRight")) {
    Arrow(G, {3, 10}, {17, 10});
  } else if (N == QLatin1String("acPanUp")) {
    Arrow(G, {10, 17}, {10, 3});
  } else if (N == QLatin1String("acPanDown")) {
    Arrow(G, {10, 3}, {10, 17});
  } else if (N == QLatin1String("acUndo")) {
    G.drawArc(QRectF(4, 5, 12, 10), 0, 180 * 16);
    Arrow(G, {4, 9}, {4, 14});
  } else if (N == QLatin1String("acRedo")) {
    G.drawArc(QRectF(4, 5, 12, 10), 0, 180 * 16);
    Arrow(G, {16, 9}, {16, 14});
  } else if (N == QLatin1String("acPerSnap")) {
    G.drawLine(3, 16, 17, 16);
    G.setPen(Red);
    G.drawLine(10, 3, 10, 16);
    G.drawRect(QRectF(10, 12, 4, 4));
  } else if (N == QLatin1String("acMidSnap")) {
    G.drawLine(2, 14, 18, 14);
    G.setPen(Red);
    G.drawPolygon(QPolygonF({QPointF(10, 6), QPointF(14, 13), QPointF(6, 13)}));
  } else if (N == QLatin1String("acIntSnap")) {
    G.drawLine(3, 3, 17, 17);
    G.drawLine(17, 3, 3, 17);
    G.setPen(Red);
    G.drawRect(QRectF(7, 7, 6, 6));
  } else if (N == QLatin1String("acCut")) {
    G.drawEllipse(QRectF(3, 12, 5, 5));
    G.drawEllipse(QRectF(12, 12, 5, 5));
    G.drawLine(7, 12, 14, 2);
    G.drawLine(13, 12, 6, 2);
  } else if (N == QLatin1String("acPaste")) {
    G.drawRect(QRectF(4, 4, 12, 14));
    G.drawRect(QRectF(7, 2, 6, 4));
  } else if (N == QLatin1String("acSave")) {
    G.drawRect(QRectF(3, 3, 14, 14));
    G.drawRect(QRectF(6, 3, 8, 5));
    G.drawRect(QRectF(6, 11, 8, 6));
  } else if (N == QLatin1String("acSelDrawSet")) {
    G.drawRect(QRectF(2, 5, 16, 12));
    G.drawLine(2, 5, 7, 2);
    G.drawLine(7, 2, 10, 5);
  } else if (N == QLatin1String("acInitialize")) {
    G.drawRect(QRectF(4, 3, 12, 15));
    G.setPen(Red);
    G.drawLine(7, 8, 13, 14);
    G.drawLine(13, 8, 7, 14);
  } else if (N == QLatin1String("acShowBars") || N == QLatin1String("acAddBar") || N == QLatin1String("acDeleteBar") ||
             N == QLatin1String("acSetBarInfo") || N == QLatin1String("acMergeBars") || N == QLatin1String("acLinesToBar")) {
    G.setPen(QPen(QColor(200, 140, 0), 2.4));
    G.drawLine(3, 14, 15, 14);
    G.drawArc(QRectF(12, 8, 6, 6), 270 * 16, 180 * 16);
    G.setPen(Red);
    if (N == QLatin1String("acAddBar")) { G.drawLine(6, 3, 6, 9); G.drawLine(3, 6, 9, 6); }
    if (N == QLatin1String("acDeleteBar")) G.drawLine(3, 6, 9, 6);
    if (N == QLatin1String("acSetBarInfo")) G.drawText(QRectF(2, 0, 12, 10), Qt::AlignCenter, QStringLiteral("i"));
    if (N == QLatin1String("acMergeBars")) G.drawEllipse(QPointF(9, 14), 2, 2);
    if (N == QLatin1String("acLinesToBar")) Arrow(G, {4, 3}, {4, 11});
  } else if (N == QLatin1String("acDebug")) {
    G.drawEllipse(QRectF(6, 5, 8, 11));
    for (int Y : {8, 12}) { G.drawLine(2, Y, 6, Y); G.drawLine(14, Y, 18, Y); }
  } else if (N == QLatin1String("acFindParam")) {
    Magnifier(G);
    G.drawText(QRectF(3, 3, 10, 10), Qt::AlignCenter, QStringLiteral("x"));
  } else if (N == QLatin1String("acEditParam")) {
    G.drawText(QRectF(0, 0, 12, 14), Qt::AlignCenter, QStringLiteral("x"));
    G.setPen(Red);
    G.drawLine(9, 17, 17, 9);
  } else if (N == QLatin1String("acEditTabOrder")) {
    G.drawText(QRectF(0, 0, 10, 10), Qt::AlignCenter, QStringLiteral("1"));
    G.drawText(QRectF(10, 10, 10, 10), Qt::AlignCenter, QStringLiteral("2"));
    Arrow(G, {6, 12}, {12, 6});
  } else if (N == QLatin1String("acGridSetting")) {
    G.setPen(QPen(QColor(20, 40, 120), 1));
    for (int K = 3; K <= 17; K += 7) { G.drawLine(K, 3, K, 17); G.drawLine(3, K, 17, K); }
  } else if (N == QLatin1String("acSnapSwitch")) {
    G.drawRect(QRectF(6, 6, 8, 8));
    G.drawLine(10, 1, 10, 19);
    G.drawLine(1, 10, 19, 10);
  } else if (N == QLatin1String("acDrawProp")) {
    G.drawRect(QRectF(3, 3, 14, 14));
    for (int Y : {7, 10, 13}) G.drawLine(6, Y, 14, Y);
  } else if (N == QLatin1String("acExit")) {
    G.drawRect(QRectF(3, 3, 9, 14));
    G.setPen(Red);
    Arrow(G, {8, 10}, {18, 10});
  } else if (N == QLatin1String("acSelectAll")) {
    G.setPen(QPen(QColor(20, 40, 120), 1.2, Qt::DashLine));
    G.drawRect(QRectF(2, 2, 16, 16));
    G.setPen(Ink);
    G.drawLine(5, 15, 15, 5);
  } else if (N == QLatin1String("acCancelSel")) {
    G.setPen(QPen(QColor(20, 40, 120), 1.2, Qt::DashLine));
    G.drawRect(QRectF(2, 2, 16, 16));
    G.setPen(Red);
    G.drawLine(5, 5, 15, 15);
  } else {
    return false;
  }
  return true;
}

}  // namespace

struct TIconsForm::TData {
  QHash<QString, QIcon> Cache;
};

TIconsForm::TIconsForm() : FData(new TData) { GInstance = this; }

TIconsForm::~TIconsForm() {
  if (GInstance == this) GInstance = nullptr;
  delete FData;
}

TIconsForm* TIconsForm::Instance() { return GInstance; }

QIcon TIconsForm::Icon(const QString& AActionName) {
  auto It = FData->Cache.find(AActionName);
  if (It != FData->Cache.end()) return *It;
  QPixmap P(Side, Side);
  P.fill(Qt::transparent);
  QIcon I;
  {
    QPainter G(&P);
    G.setRenderHint(QPainter::Antialiasing);
    if (Paint(AActionName, G)) I = QIcon(P);
  }
  FData->Cache.insert(AActionName, I);
  return I;
}
