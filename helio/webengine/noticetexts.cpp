#include "helio/webengine/noticetexts.h"

namespace helio {

NoticeTexts NoticeTexts::of(const QString &language)
{
    if (language.startsWith(QLatin1String("zh")))
        return {QStringLiteral("页面已停止运行"),
                QStringLiteral("显示此页面的进程意外终止。请重新加载页面以继续。"
                               "已导出的文件不受影响。"),
                QStringLiteral("无法显示此页面"),
                QStringLiteral("页面“%1”缺失或无法读取。请重新安装本程序，然后重试。"),
                QStringLiteral("重新加载"),
                QStringLiteral("关闭窗口")};
    return {QStringLiteral("This page has stopped"),
            QStringLiteral("The process that displays it ended unexpectedly. Reload the page to "
                           "continue. Exported files are not affected."),
            QStringLiteral("This page cannot be shown"),
            QStringLiteral("The page \"%1\" is missing or cannot be read. Reinstall the program "
                           "and try again."),
            QStringLiteral("Reload"),
            QStringLiteral("Close window")};
}

} // namespace helio
