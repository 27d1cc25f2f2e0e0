// Colours, text codes and MTEXT formatting of DXF files.

#include "DxfReader.h"

#include <cmath>

namespace dxf {

quint32 AciColor(int AIndex) {
  const auto Rgb = [](int R, int G, int B) { return quint32(R) | quint32(G) << 8 | quint32(B) << 16; };
  static const int Basic[10][3] = {{0, 0, 0},     {255, 0, 0},   {255, 255, 0}, {0, 255, 0},     {0, 255, 255},
                                   {0, 0, 255},   {255, 0, 255}, {255, 255, 255}, {128, 128, 128}, {192, 192, 192}};
  static const int Greys[6] = {51, 91, 132, 173, 214, 255};
  if (AIndex <= 0 || AIndex > 255)
    return Rgb(255, 255, 255);
  if (AIndex < 10)
    return Rgb(Basic[AIndex][0], Basic[AIndex][1], Basic[AIndex][2]);
  if (AIndex >= 250)
    return Rgb(Greys[AIndex - 250], Greys[AIndex - 250], Greys[AIndex - 250]);
  // 24 hues 15 degrees apart; five brightness levels, each full and half saturated
  static const int Levels[5] = {255, 204, 153, 127, 76};
  const int Hue = (AIndex - 10) / 10, Variant = (AIndex - 10) % 10;
  const int Max = Levels[Variant / 2];
  const int Min = Variant % 2 ? Max / 2 : 0;
  const double H = Hue * 15.0 / 60.0;  // sector 0..6
  const int Sector = int(H);
  const double F = H - Sector;
  const int Up = Min + int((Max - Min) * F), Down = Min + int((Max - Min) * (1 - F));
  switch (Sector) {
    case 0: return Rgb(Max, Up, Min);
    case 1: return Rgb(Down, Max, Min);
    case 2: return Rgb(Min, Max, Up);
    case 3: return Rgb(Min, Down, Max);
    case 4: return Rgb(Up, Min, Max);
    default: return Rgb(Max, Min, Down);
  }
}

QString ReplaceTextCodes(const QString& AText) {
  if (!AText.contains(QLatin1String("%%")))
    return AText;
  QString R;
  R.reserve(AText.size());
  for (qsizetype I = 0; I < AText.size(); ++I) {
    if (AText[I] == u'%' && I + 2 < AText.size() && AText[I + 1] == u'%') {
      const QChar C = AText[I + 2].toLower();
      const char16_t Sub = C == u'c' ? u'\u03A6' : C == u'd' ? u'\u00B0' : C == u'p' ? u'\u00B1' : C == u'%' ? u'%' : 0;
      if (Sub) {
        R += QChar(Sub);
        I += 2;
        continue;
      }
      if (C == u'o' || C == u'u') {  // overline, underline switches
        I += 2;
        continue;
      }
    }
    R += AText[I];
  }
  return R;
}

QString StripMTextFormat(const QString& AText) {
  QString R;
  R.reserve(AText.size());
  const qsizetype N = AText.size();
  for (qsizetype I = 0; I < N; ++I) {
    const QChar C = AText[I];
    if (C == u'{' || C == u'}')
      continue;
    if (C != u'\\' || I + 1 >= N) {
      R += C;
      continue;
    }
    const QChar K = AText[++I];
    switch (K.unicode()) {
      case u'P':
      case u'n':
        R += u'\n';
        break;
      case u'~':
        R += u' ';
        break;
      case u'\\':
      case u'{':
      case u'}':
        R += K;
        break;
      case u'L': case u'l': case u'O': case u'o': case u'K': case u'k': case u'N':
        break;
      case u'S': {
        // stacked text up to ';': "a^b", "a/b" and "a#b" read as "a/b"
        const qsizetype End = AText.indexOf(u';', I + 1);
        const QString Stack = AText.mid(I + 1, (End < 0 ? N : End) - I - 1);
        QString Part = Stack;
        Part.replace(u'^', u'/').replace(u'#', u'/');
        R += Part.trimmed();
        I = End < 0 ? N : End;
        break;
      }
      case u'A': case u'C': case u'c': case u'F': case u'f': case u'H': case u'h': case u'Q': case u'q':
      case u'T': case u't': case u'W': case u'w': case u'p': {
        // a switch with a value up to ';'
        const qsizetype End = AText.indexOf(u';', I + 1);
        I = End < 0 ? N : End;
        break;
      }
      default:
        R += C;
        R += K;
    }
  }
  return R;
}

}  // namespace dxf
