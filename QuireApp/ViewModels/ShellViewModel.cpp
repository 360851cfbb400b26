#include "QuireApp/ViewModels/ShellViewModel.h"

namespace quire {

ShellViewModel::ShellViewModel(AppModel &model, const QUrl &helpHost, QObject *parent)
    : QObject(parent)
    , m_library(model)
    , m_activity(model)
    , m_insights(model)
    , m_settings(model, helpHost)
{
}

} // namespace quire
