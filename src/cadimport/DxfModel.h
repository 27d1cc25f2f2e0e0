#pragma once
// What the DXF reader keeps of a file between reading and walking it.

#include <QString>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace dxf {

enum class TKind : unsigned char { Line, Arc, Circle, Poly, Spline, Ellipse, Point, Text, MText, Solid, Hatch, Insert, Dimension };

struct TVtx {
  double X = 0, Y = 0, Bulge = 0;
};

// A hatch boundary: points with bulges, always closed.
using TLoop = std::vector<TVtx>;

struct TEnt;

// What few entities need: spline knots and weights, hatch loops, an insert's attributes.
struct TEntExtra {
  std::vector<double> Knots, Weights;
  std::vector<TVtx> Fit;
  std::vector<TLoop> Loops;
  std::vector<TEnt> Attribs;
};

struct TEnt {
  TKind Kind = TKind::Line;
  bool Ocs = false;     // extrusion (0, 0, -1): x mirrored
  bool Closed = false;
  unsigned char HAlign = 0, VAlign = 0;  // TEXT 72/73, MTEXT attachment in HAlign
  int Layer = 0;        // index into the layer names
  int LineType = -1;    // index into the line-type names; -1 by layer, -2 by block
  int Aci = 256;        // 256 by layer, 0 by block
  int TrueColor = -1;   // 0x00RRGGBB from group 420
  int Degree = 3;       // spline degree; insert columns
  int Rows = 1;         // insert rows
  // Line: x1 y1 x2 y2; arc: cx cy r a0 a1 (degrees); circle: cx cy r; point: x y;
  // text: x y h rot(deg) width ax ay; mtext: x y h rot(rad) width;
  // insert: x y sx sy rot(deg) dx dy; ellipse: cx cy mx my ratio t0 t1; solid: 8 coordinates.
  double A[8] = {};
  std::vector<TVtx> Pts;  // polyline vertices, spline control points
  QString Text;           // text, or the block an insert or dimension names
  std::unique_ptr<TEntExtra> Ext;

  TEntExtra& Extra() {
    if (!Ext) Ext = std::make_unique<TEntExtra>();
    return *Ext;
  }
};

struct TLayerInfo {
  QString Name;
  int Aci = 7;
  int TrueColor = -1;
  int LineType = -1;  // index; -1 continuous
  bool Frozen = false, Off = false;
};

struct TBlock {
  QString Name;
  double BaseX = 0, BaseY = 0;
  std::vector<TEnt> Ents;
};

struct TDoc {
  QString Version, CodePage;
  int InsUnits = 0;
  std::vector<TLayerInfo> Layers;  // index 0 is layer "0"
  std::vector<QString> LineTypes;
  std::unordered_map<std::string, int> LayerIndex, LineTypeIndex;  // by the name's raw bytes, upper case
  std::unordered_map<std::string, TBlock> Blocks;                   // by upper-case name
  std::vector<TEnt> Ents;
};

}  // namespace dxf
