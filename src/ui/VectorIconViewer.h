#pragma once
// Drawings shown small: a viewer that fits one drawing into its box, and a scrolling
// grid of such viewers in cells of 230 x 60 that fits its columns to its width, with a
// focused cell moved by the arrow keys.

#include <QScrollArea>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class TVectorDrawing;

class TVectorDrawingViewer : public QWidget {
public:
  explicit TVectorDrawingViewer(QWidget* AParent = nullptr);
  ~TVectorDrawingViewer() override;
  TVectorDrawing& Drawing() { return *FDrawing; }
  void SetFocused(bool AValue);
  bool Focused() const { return FFocused; }
  std::function<void()> OnClick, OnDblClick;

protected:
  void paintEvent(class QPaintEvent* AEvent) override;
  void mousePressEvent(class QMouseEvent* AEvent) override;
  void mouseDoubleClickEvent(class QMouseEvent* AEvent) override;

private:
  std::unique_ptr<TVectorDrawing> FDrawing;
  bool FFocused = false;
};

class TVectorAutoColRow : public QScrollArea {
public:
  static constexpr int CellWidth = 230, CellHeight = 60;
  explicit TVectorAutoColRow(QWidget* AParent = nullptr);
  // The grid owns the viewer; its Tag is the caller's number.
  void Add(TVectorDrawingViewer* AViewer, int ATag);
  void Clear();
  int Count() const { return int(FViewers.size()); }
  TVectorDrawingViewer* GetItems(int AIndex) const { return FViewers[size_t(AIndex)]; }
  int Tag(int AIndex) const { return FTags[size_t(AIndex)]; }
  int ItemIndex() const { return FItemIndex; }
  void SetItemIndex(int AIndex);
  int ColCount() const { return FColCount; }
  std::function<void()> OnIconChanged, OnIconDblClick;

protected:
  void resizeEvent(class QResizeEvent* AEvent) override;
  void keyPressEvent(class QKeyEvent* AEvent) override;

private:
  void Arrange();
  std::vector<TVectorDrawingViewer*> FViewers;
  std::vector<int> FTags;
  int FItemIndex = -1;
  int FColCount = 1;
  static constexpr int FMargin = 4, FSpace = 4;
};
