#include "app/BusWindow.h"
#include "ui/session/Program.h"

int main(int /*argumentCount*/, char *arguments[]) {
    return ztm::RunProgram(arguments[0], ztm::NewBusWindow, ztm::Opening::CompanionAlone);
}
