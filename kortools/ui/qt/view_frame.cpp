// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/view_frame.h"

#include "kortools/ui/qt/scale_pixels.h"
#include "kortools/ui/qt/text.h"
#include "kortools/ui/qt/view.h"

#include <QBackingStore>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QImage>
#include <QLabel>
#include <QVBoxLayout>

namespace kortools::ui::qt {
namespace {

constexpr QSize first_size(640, 480);
constexpr int status_margin = 2; // pixels

// The view above a line of text.
class FrameWidget : public QWidget {
public:
    FrameWidget(WindowHandler &handler, ViewKind kind)
        : view(*new View(this, kind))
        , status(*new QLabel(this))
    {
        status.setTextFormat(Qt::PlainText);
        status.setMargin(status_margin);
        status.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        auto *const layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        layout->addWidget(&view, 1);
        layout->addWidget(&status);
        setFocusProxy(&view);
        resize(first_size);
        lay_out();
        view.get_surface()->set_handler(&handler); // which may not expect to be called so early
    }

    // Qt does nothing of it before a window is shown for the first time.
    void lay_out()
    {
        layout()->activate();
        if (isVisible())
            return;
        QResizeEvent event(view.size(), QSize());
        QCoreApplication::sendEvent(&view, &event);
        QResizeEvent inner(view.viewport()->size(), QSize());
        QCoreApplication::sendEvent(view.viewport(), &inner);
    }

    View &view;
    QLabel &status;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        auto const surface = view.get_surface();
        event->setAccepted(
            surface->ask([](WindowHandler &handler) { return handler.OnClose(); }, false));
    }
};

// From what Qt has painted, as painting it anew would call the handler.
QImage copy_screen(QWidget &widget)
{
    QWidget &frame = *widget.window();
    QRect const place(widget.mapTo(&frame, QPoint()), widget.size());
    QBackingStore *const store = frame.backingStore();
    auto *const image = store ? dynamic_cast<QImage *>(store->paintDevice()) : nullptr;
    if (image && image->devicePixelRatio() == 1 && image->rect().contains(place))
        return image->copy(place).convertToFormat(QImage::Format_RGB32);
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32).scaled(widget.size());
}

Picture capture(QWidget &widget)
{
    update_now(widget);
    QImage const image = copy_screen(widget);
    WindowThread::get().calls.rethrow();
    return to_picture(reinterpret_cast<std::uint32_t const *>(image.constBits()),
        image.bytesPerLine() / 4, to_size(image.size()));
}

class QtViewFrame : public ViewFrame {
public:
    QtViewFrame(WindowHandler &handler, ViewKind kind, wchar_t const *title)
        : m_frame(new FrameWidget(handler, kind))
        , m_view(m_frame->view, kind)
    {
        m_frame->setWindowTitle(to_qt(title));
    }

    // A handler that runs now has Qt's frames below it, which use the widgets.
    ~QtViewFrame() override
    {
        auto const surface = m_view.get_surface();
        surface->set_handler(nullptr);
        if (!m_frame)
            return;
        m_frame->hide();
        if (surface->is_in_handler())
            m_frame->deleteLater();
        else
            delete m_frame.data();
    }

    CWnd &GetView() override { return m_view; }
    void Show(bool show) override { m_frame->setVisible(show); }
    bool IsVisible() const override { return m_frame->isVisible(); }
    void SetTitle(wchar_t const *title) override { m_frame->setWindowTitle(to_qt(title)); }
    void SetStatus(wchar_t const *text) override { m_frame->status.setText(to_qt(text)); }
    void SetViewSize(CXSize const &size) override
    {
        m_frame->resize(size.cx, size.cy + m_frame->status.sizeHint().height());
        m_frame->lay_out();
    }
    Picture CaptureView() override { return capture(*m_frame->view.viewport()); }
    Picture CaptureFrame() override { return capture(*m_frame); }

private:
    QPointer<FrameWidget> m_frame;
    ViewWindow m_view;
};

} // namespace

std::unique_ptr<ViewFrame> make_view_frame(
    WindowHandler &handler, ViewKind kind, wchar_t const *title)
{
    return std::make_unique<QtViewFrame>(handler, kind, title);
}

} // namespace kortools::ui::qt
