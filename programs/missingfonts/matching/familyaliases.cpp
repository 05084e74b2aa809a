#include "programs/missingfonts/matching/familyaliases.h"

#include <QHash>

namespace programs {

namespace {

constexpr const char *families[][3] = {
    // Simplified Chinese
    {"SimSun", "宋体"},
    {"NSimSun", "新宋体"},
    {"SimHei", "黑体"},
    {"KaiTi", "楷体"},
    {"KaiTi_GB2312", "楷体_GB2312"},
    {"FangSong", "仿宋"},
    {"FangSong_GB2312", "仿宋_GB2312"},
    {"Microsoft YaHei", "微软雅黑"},
    {"Microsoft YaHei Light", "微软雅黑 Light"},
    {"DengXian", "等线"},
    {"DengXian Light", "等线 Light"},
    {"LiSu", "隶书"},
    {"YouYuan", "幼圆"},
    {"STSong", "华文宋体"},
    {"STKaiti", "华文楷体"},
    {"STFangsong", "华文仿宋"},
    {"STXihei", "华文细黑"},
    {"STZhongsong", "华文中宋"},
    {"STXinwei", "华文新魏"},
    {"STXingkai", "华文行楷"},
    {"STLiti", "华文隶书"},
    {"STHupo", "华文琥珀"},
    {"STCaiyun", "华文彩云"},
    {"FZShuTi", "方正舒体"},
    {"FZYaoti", "方正姚体"},
    {"FZXiaoBiaoSong-B05S", "方正小标宋简体"},
    {"FZXiaoBiaoSong-B05", "方正小标宋_GBK"},
    {"FZFangSong-Z02S", "方正仿宋简体"},
    {"FZKai-Z03S", "方正楷体简体"},
    {"FZHei-B01S", "方正黑体简体"},
    {"Source Han Sans SC", "思源黑体", "思源黑体 CN"},
    {"Source Han Serif SC", "思源宋体", "思源宋体 CN"},
    {"PingFang SC", "苹方-简", "苹方"},
    {"Hiragino Sans GB", "冬青黑体简体中文"},
    {"WenQuanYi Micro Hei", "文泉驿微米黑", "文泉驛微米黑"},
    {"WenQuanYi Zen Hei", "文泉驿正黑", "文泉驛正黑"},
    // Traditional Chinese
    {"PMingLiU", "新細明體"},
    {"MingLiU", "細明體"},
    {"DFKai-SB", "標楷體"},
    {"Microsoft JhengHei", "微軟正黑體"},
    {"PingFang TC", "蘋方-繁"},
    // Japanese
    {"MS Mincho", "ＭＳ 明朝"},
    {"MS PMincho", "ＭＳ Ｐ明朝"},
    {"MS Gothic", "ＭＳ ゴシック"},
    {"MS PGothic", "ＭＳ Ｐゴシック"},
    {"Meiryo", "メイリオ"},
    {"Yu Gothic", "游ゴシック"},
    {"Yu Gothic Light", "游ゴシック Light"},
    {"Yu Mincho", "游明朝"},
    {"Hiragino Mincho ProN", "ヒラギノ明朝 ProN"},
    {"Hiragino Kaku Gothic ProN", "ヒラギノ角ゴ ProN"},
    // Korean
    {"Malgun Gothic", "맑은 고딕"},
    {"Batang", "바탕"},
    {"BatangChe", "바탕체"},
    {"Dotum", "돋움"},
    {"DotumChe", "돋움체"},
    {"Gulim", "굴림"},
    {"GulimChe", "굴림체"},
    {"Gungsuh", "궁서"},
    {"GungsuhChe", "궁서체"},
    {"Nanum Gothic", "나눔고딕", "NanumGothic"},
    {"Nanum Myeongjo", "나눔명조", "NanumMyeongjo"},
};

QHash<QString, QStringList> makeIndex()
{
    QHash<QString, QStringList> index;
    for (const auto &family : families) {
        QStringList names;
        for (const char *name : family) {
            if (name)
                names.append(QString::fromUtf8(name));
        }
        for (const QString &name : qAsConst(names))
            index.insert(name.toCaseFolded(), names);
    }
    return index;
}

} // namespace

QStringList familyAliases(const QString &name)
{
    static const QHash<QString, QStringList> index = makeIndex();
    return index.value(name.toCaseFolded(), {name});
}

} // namespace programs
