#include "app/BoardWindow.h"
#include "ui/session/Program.h"

int main(int /*argumentCount*/, char *arguments[]) {
    return ztm::RunProgram(arguments[0], []() -> std::unique_ptr<QWidget> {
        return std::make_unique<ztm::BoardWindow>();
    });
}
