#pragma once
// The shared icon store: small pictures for the actions and tool buttons, drawn once
// per run from simple strokes so they need no image files.

#include <QIcon>
#include <QString>

class TIconsForm {
public:
  TIconsForm();
  ~TIconsForm();
  TIconsForm(const TIconsForm&) = delete;
  TIconsForm& operator=(const TIconsForm&) = delete;

  // The icon of an action by its name; a null icon for an action without one.
  QIcon Icon(const QString& AActionName);
  // The store of the running editor; null outside a run.
  static TIconsForm* Instance();

private:
  struct TData;
  TData* FData;
};
