#include "window/WindowTest.h"

#include <algorithm>
#include <future>

#include "platform/ui/Application.h"
#include "support/SupportWindow.h"

namespace varnith::test {

void WindowTest::Work(const std::function<void()>& user) {
    Start([&] {
        frame = &Front();
        EXPECT_NO_THROW(user());
    });
}

// It handles requests in order: once it has changed its number of desktops, it has done all earlier ones.
void WindowTest::WaitForWindowManager() {
    static int desktops = 2;
    desktops ^= 1;
    QProcess::execute("xdotool", {"set_num_desktops", QString::number(desktops)});
    const auto is_done = [] {
        QProcess count;
        count.start("xdotool", {"get_num_desktops"});
        return count.waitForFinished() && count.readAll().toInt() == desktops;
    };
    WaitUntil(is_done, [] {});
}

QMainWindow& WindowTest::Front() {
    const std::string title = Application::Current().FrontWindow()->Title();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* found = qobject_cast<QMainWindow*>(widget);
        if (!found || !found->isVisible() || found->windowTitle().toStdString() != title) continue;
        Activate(*found);
        return *found;
    }
    throw std::runtime_error("no window " + title);
}

void WindowTest::Activate(const QWidget& window) {
    // A window manager may open a new window without activating it; the user would then click on it.
    Do({"windowactivate", QString::number(window.winId())});
    WaitForWindowManager();
    QApplication::processEvents();
    ServeUntil([&] { return window.isActiveWindow(); });
}

QMainWindow& WindowTest::Opened(const Ref<MenuItem>& entry) {
    Application::Current().Choose(entry);
    return Front();
}

struct LayoutTest : WindowTest {
    void Resize(const QSize& size, const QSize& contents) {
        frame->resize(size);
        ServeUntil([&] { return frame->centralWidget()->size() == contents; });
        EXPECT_EQ(QSize(Main().Width(), Main().Height()), contents);
    }
    void ExpectColumns(const QList<int>& expected) {
        QList<int> widths;
        ServeUntil([&] {
            widths.clear();
            for (int column = 0; column < 5; ++column) widths += Table().columnWidth(column);
            return widths == expected;
        });
        EXPECT_EQ(widths, expected);
    }
    // How much what stands in the list differs from its background. 0 without a text.
    int Contrast() const {
        const QImage image = Table().viewport()->grab().toImage();
        int most = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                most = std::max(most, std::abs(qGray(image.pixel(x, y)) - qGray(image.pixel(0, 0))));
        return most;
    }
    // Drags the right edge of a column's heading.
    void Drag(int column, int by) {
        const QHeaderView& header = *Table().horizontalHeader();
        const int edge = header.sectionViewportPosition(column) + header.sectionSize(column) - 1;
        const QPoint place = header.viewport()->mapToGlobal(QPoint(edge, 8));
        const QString y = QString::number(place.y());
        Do({"mousemove", QString::number(place.x()), y, "mousedown", "1", "mousemove",
            QString::number(place.x() + by), y, "mouseup", "1"});
    }
};

TEST_F(LayoutTest, FollowsItsLayoutAtEverySize) {
    Work([&] {
        EXPECT_EQ(frame->pos(), QPoint(Main().Left(), Main().Top()));
        const int rest = Table().viewport()->width() - 30 - 65 - 55;
        const int name = rest / 2;
        const int path = rest - name;
        ExpectColumns({30, name, 65, path, 55});
        Drag(4, 20);
        ExpectColumns({30, name - 10, 65, path - 10, 75});
        Drag(1, -90);
        ExpectColumns({30, name - 100, 65, path + 80, 75});
        const int width = Table().viewport()->width();
        EXPECT_GT(Contrast(), 0) << "tells what to press";
        Main().Listbox1.AddRow("");
        ServeUntil([&] { return Table().model()->rowCount() == 1; });
        EXPECT_EQ(Contrast(), 0);
        for (int i = 1; i < 60; ++i) Main().Listbox1.AddRow("");
        ServeUntil([&] { return Table().viewport()->width() < width; });
        const int bar = width - Table().viewport()->width();
        ExpectColumns({30, name - 100, 65, path + 80 - bar, 75});

        Resize(frame->size() + QSize(200, 60), {974, 730});
        auto widgets = frame->centralWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
        widgets.removeIf([](const QWidget* widget) { return qobject_cast<const QFocusFrame*>(widget); });
        EXPECT_TRUE(std::ranges::equal(widgets, Main().Controls(), [](const QWidget* w, const Control* c) {
            const Bounds& b = c->CurrentBounds();
            return w->geometry() == QRect(b.Left, b.Top, b.Width, b.Height);
        }));
        ExpectColumns({30, name - 100, 65, path + 280 - bar, 75});
        Resize({300, 300}, {774, 670});
        ExpectColumns({30, name - 100, 65, path + 80 - bar, 75});
        Drag(3, -50);
        ExpectColumns({30, name - 100, 65, path + 30 - bar, 75});
        Main().Listbox1.DeleteAllRows();
        ServeUntil([&] { return Table().viewport()->width() == width; });
        ExpectColumns({30, name - 100, 65, path + 30 - bar, 75});
    });
}

TEST_F(LayoutTest, CanBeReadOnLightAndDarkDesktops) {
    Work([&] {
        for (const int grey : {240, 50}) {
            QPalette colours(QColor(grey, grey, grey));
            colours.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));  // as Qt leaves it on KDE
            QApplication::setPalette(colours);
            QApplication::processEvents();
            EXPECT_GT(Contrast(), 60) << "what an empty list tells";
            for (auto* control : frame->centralWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
                if (control->focusPolicy() == Qt::NoFocus) continue;
                control->setFocus();
                const QPoint beside = control->mapTo(frame, QPoint(-1, control->height() / 2));
                const QColor ring = frame->grab().toImage().pixelColor(beside);
                EXPECT_GT(std::abs(qGray(ring.rgb()) - grey), 60) << control->metaObject()->className();
            }
            // Each window is either dark or light, with all that is in it.
            for (const Ref<MenuItem>& entry : {Main().FileExport(), Main().HelpSupport()}) {
                QMainWindow& window = Opened(entry);
                const QImage image = window.grab().toImage();
                for (const QWidget* control : window.findChildren<QLineEdit*>())
                    EXPECT_LT(std::abs(qGray(image.pixel(control->mapTo(&window, QPoint(50, 10)))) -
                                       qGray(image.pixel(5, 5))),
                              60);
                window.close();
            }
        }
    });
}

TEST_F(WindowTest, ShowsAScanThatGoesOnWhateverTheUserDoes) {
    documents.File("a\n\xFF.tif", TiffBytes(2));
    for (int i = 0; i < 400; ++i)
        documents.File("d" + std::to_string(i % 20) + "/" + std::to_string(i) + ".tif");
    std::promise<void> answer;
    disk.fails = [told = answer.get_future().share()](const std::string& path) {
        if (path.ends_with("/d9/9.tif")) told.wait();
        return false;
    };
    Work([&] {
        const Listbox& list = Main().Listbox1;
        QTest::mouseClick(frame->findChild<QCheckBox*>(), Qt::LeftButton, {}, QPoint(8, 10));
        desktop.choose = [&] { return documents.Path(); };
        frame->findChild<QPushButton*>()->click();
        ServeUntil([&] { return frame->windowTitle() == "Processing Item: 9.tif"; });
        QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, QPoint(10, Centre(1, 0).y()));
        EXPECT_EQ(Table().viewport()->cursor().shape(), Qt::BusyCursor);
        Table().scrollToBottom();
        frame->resize(900, 800);
        ServeUntil([&] { return Table().width() > 860; });
        Opened(Main().HelpSupport());
        const std::int32_t rows = list.ListCount();
        answer.set_value();
        ServeUntil([&] { return list.ListCount() > rows; });
        SupportWindow::Instance()->Close();
        ServeUntil([&] { return frame->windowTitle() == "Varnith - Testix - Finished"; });
        QString texts = Table().model()->index(0, 1).data().toString();
        for (const auto* label : frame->findChildren<QLabel*>())
            texts += "|" + label->text() + (label->alignment() & Qt::AlignRight ? " right" : " left");
        const auto& popup = *frame->findChild<QComboBox*>();
        texts += "|" + popup.currentText() + "|" + popup.itemText(0) + "|" + popup.itemText(1);
        EXPECT_EQ(texts, "a\u240A\uFFFD.tif|Address: left|401 file(s) right|Filter: right||All|tif");
        EXPECT_EQ(frame->findChild<QLineEdit*>()->text().toStdString(), documents.Path());
        EXPECT_TRUE(list.CellCheck(1, 0));

        // The pointer of a scan that blocks the window, and of one that the next press stops.
        frame->findChild<QCheckBox*>()->click();
        Qt::CursorShape during = Qt::ArrowCursor;
        disk.fails = [&](const std::string&) {
            during = frame->cursor().shape();
            return false;
        };
        frame->findChild<QPushButton*>()->click();
        EXPECT_EQ(during, Qt::WaitCursor);
        EXPECT_EQ(frame->cursor().shape(), Qt::ArrowCursor);
        frame->findChild<QCheckBox*>()->click();
        frame->findChild<QPushButton*>()->click();
        ServeUntil([&] { return frame->cursor().shape() == Qt::BusyCursor; });
        desktop.choose = nullptr;
        frame->findChild<QPushButton*>()->click();
        EXPECT_EQ(frame->cursor().shape(), Qt::ArrowCursor);
        Main().SetTitle("Processing Item: a[*].tif");
        ServeUntil([&] { return frame->windowHandle()->title() == "Processing Item: a[*].tif"; });
    });
}

}  // namespace varnith::test
