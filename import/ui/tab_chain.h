// The tab order of a dialog, given as one chain of its controls.
#pragma once

#include <QWidget>
#include <initializer_list>

namespace vantrel::ui {

inline void SetTabChain(std::initializer_list<QWidget*> chain) {
    QWidget* previous = nullptr;
    for (QWidget* next : chain) {
        if (previous) QWidget::setTabOrder(previous, next);
        previous = next;
    }
}

}  // namespace vantrel::ui
