// SPDX-License-Identifier: MIT
// A host with a window of its own, which the library sees through its back end on Qt.
#include <kortools/kortools.h>
#include <kortools/ui/qt/back_end.h>

#include <QApplication>
#include <QWidget>
#include <cstdio>

int main(int argc, char **argv)
{
    QApplication const application(argc, argv);
    kortools::ui::qt::install_back_end();
    QWidget widget;
    widget.resize(320, 200);
    auto const window = kortools::ui::qt::attach_widget(&widget, nullptr);
    CXSize const size = window->GetClientSize();
    std::printf("a window of %d x %d\n", size.cx, size.cy);
    return 0;
}
