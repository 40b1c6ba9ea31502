#include "shell/qt/GraphicRole.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace parlowen {
namespace {

constexpr const char* kGraphic = "parlowenGraphic";

QAccessibleInterface* GraphicOf(const QString&, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr || !widget->property(kGraphic).toBool()) return nullptr;
  return new QAccessibleWidget(widget, QAccessible::Graphic);
}

}  // namespace

void MakeGraphic(QWidget& widget) {
  static const bool installed = (QAccessible::installFactory(GraphicOf), true);
  widget.setProperty(kGraphic, installed);
}

}  // namespace parlowen
