#pragma once

#include <QAction>
#include <memory>

#include "AllCommands.h"
#include "FakeWebBrowser.h"
#include "Forms.h"
#include "MainWindow.h"
#include "StartUp.h"
#include "TempAppFolder.h"

/// The whole program in a folder of its own, its windows on engine controls without an engine.
/// The settings ask for no splash and no exit question unless a test writes others before `start`.
class ProgramWithoutEngine {
public:
    ProgramWithoutEngine()
    {
        folder.writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n");
    }
    ~ProgramWithoutEngine()
    {
        frame.reset();
        for (QWidget *form : Forms::all())
            delete form;
    }
    ProgramWithoutEngine(const ProgramWithoutEngine &) = delete;
    ProgramWithoutEngine &operator=(const ProgramWithoutEngine &) = delete;

    void start()
    {
        frame = std::make_unique<MainWindow>();
        registerAllCommands(*frame);
        startUp(*frame);
    }
    QAction *item(const char *name) const { return frame->menuItem(QString::fromLatin1(name)); }
    void choose(const char *name) const { item(name)->trigger(); }
    bool isChecked(const char *name) const { return item(name)->isChecked(); }

    TempAppFolder folder;
    FakeEngine engine;
    std::unique_ptr<MainWindow> frame;
};
