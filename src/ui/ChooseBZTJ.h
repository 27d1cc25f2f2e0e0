#pragma once
// The draw-set chooser "选择标准图集": draw sets under their types in a tree, with a
// preview of the selected one. Through the dialog service: a script answers it with
// the shown text of a node.

#include <QByteArray>
#include <QString>
#include <QWidget>

#include "VectorIconViewer.h"

#include <memory>
#include <vector>

class IDrawingsDataSvr;
class TVectorDrawing;
struct TDataPacket;

// One node of the tree: a type (Parent -1) or a draw set under it.
struct TDrawSetTreeNode {
  QString Text;
  int Data = -1;     // type number for a root, DrawSetID for a draw set
  int Parent = -1;   // index of the parent node
};

// The tree as the chooser builds it: types in their order; a draw set of an unknown
// type under "其他类型" (made on first need); a draw set of type -1 under the parent
// of the draw set before it (a root for the first one).
std::vector<TDrawSetTreeNode> BuildDrawSetTree(const TDataPacket& ATypes, const TDataPacket& ADrawSets);

class TChooseBZTJForm {
public:
  // 1 with the chosen draw set's number, name and drawing blob; 2 when cancelled.
  static int Execute(IDrawingsDataSvr& ADrawingsDataSvr, int& ATJID, QString& ATJName, QByteArray& AStream,
                     QWidget* AOwner = nullptr);
};
