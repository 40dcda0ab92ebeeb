#include "appstate.h"

namespace tv::ui {

AppState& AppState::instance()
{
    static AppState state;
    return state;
}

} // namespace tv::ui
