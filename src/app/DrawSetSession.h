#pragma once
// One open draw set as the editor window and the command line both hold it: the
// three client datasets, the draw-set object over them, the save points that an
// unsaved run goes back to, and the open and save paths between the data server and
// the drawing. It owns the datasets and the draw set; the drawing and the editor
// belong to the caller.

#include "ClientDataSet.h"
#include "DrawSet.h"

#include <array>
#include <functional>
#include <memory>

class IDrawingsDataSvr;
class TVectorDrawing;
class TVectorDrawingEditor;

enum TDSType { dsNormal = 0, dsBar = 1, dsParam = 2 };

// Marks the item of the param ACode of ADrawSet (trimmed, any letter case) with tag 1
// and every other item with 0; false without the draw set or the param.
bool MarkParamItem(const TDrawSet* ADrawSet, const QString& AParamCode, TVectorDrawing& ADrawing);

class TDrawSetSession {
public:
  explicit TDrawSetSession(IDrawingsDataSvr& ADrawingsDataSvr);
  ~TDrawSetSession();
  TDrawSetSession(const TDrawSetSession&) = delete;
  TDrawSetSession& operator=(const TDrawSetSession&) = delete;

  // The list of all draw sets, kept for the whole run.
  void FetchDrawSets();
  // Fetches the bars and params of ADrawSetID, builds the draw set and loads its
  // drawing into ADrawing (whose item-deleted event is off while the old items go).
  // Raises Exception when the list has no such draw set.
  void LoadDrawSet(int ADrawSetID, TVectorDrawing& ADrawing);

  void MarkSavePoints();
  void RevertToSavePoints();
  void ClearDataSetFilters();

  // The drawing into the row when it changed: undo list reset, change count 0,
  // selection command, blob written. False when the drawing could not be written.
  bool SaveDrawing(TVectorDrawingEditor& AEditor);
  // SaveDrawing, the deltas to the server, save points. False when the server refused
  // (its message was shown); the change logs stay then.
  bool Save(TVectorDrawingEditor& AEditor);

  // The drawing or the draw-set rows hold unsaved work.
  bool HasChanges(const TVectorDrawing& ADrawing) const;

  // Marks the item of the param ACode (trimmed, any letter case) with tag 1 and every
  // other item with 0; false when there is no such param.
  bool FindParam(const QString& AParamCode, TVectorDrawing& ADrawing) const;

  TDrawSet* DrawSet() const { return FDrawSet.get(); }
  TClientDataSet& DrawSetDS() { return FDrawSetDS; }
  TClientDataSet& DrawSetBarDS() { return FDrawSetBarDS; }
  TClientDataSet& DrawSetParamDS() { return FDrawSetParamDS; }
  IDrawingsDataSvr& DataSvr() const { return FDrawingsDataSvr; }
  const std::array<int, 3>& SavePoints() const { return FSavePointArray; }

  // Called with the new draw set while the old one still lives.
  std::function<void(TDrawSet* ANew)> OnDrawSetReplaced;

private:
  IDrawingsDataSvr& FDrawingsDataSvr;
  TClientDataSet FDrawSetDS, FDrawSetBarDS, FDrawSetParamDS;
  std::unique_ptr<TDrawSet> FDrawSet;
  std::array<int, 3> FSavePointArray{0, 0, 0};
};
