#include "programs/component/absencetexts.h"

namespace standin {

AbsenceTexts AbsenceTexts::of(const QString &language, const QString &program)
{
    if (language.startsWith(QLatin1String("zh")))
        return {
            QStringLiteral("未安装此组件"),
            QStringLiteral("办公套件的程序“%1”不在此计算机上，因此此快捷方式无法打开任何内容。")
                .arg(program),
            QStringLiteral("请安装办公套件；或在文件管理器中右键单击文档，选择其他应用程序打开。"),
            QStringLiteral("关闭")};
    return {QStringLiteral("This component is not installed"),
            QStringLiteral("The office suite's program \"%1\" is not on this machine, so this "
                           "shortcut has nothing to open.")
                .arg(program),
            QStringLiteral("Install the office suite, or open the document with another "
                           "application from its context menu in the file manager."),
            QStringLiteral("Close")};
}

} // namespace standin
