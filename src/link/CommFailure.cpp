#include "link/CommFailure.h"

#include <cstdlib>
#include <utility>

namespace ztm {
namespace {

CommFailureHandler currentHandler;

} // namespace

void SetCommFailureHandler(CommFailureHandler handler) {
    currentHandler = std::move(handler);
}

void CommFailure() {
    if (currentHandler) {
        currentHandler();
    }
    std::_Exit(EXIT_FAILURE);
}

} // namespace ztm
