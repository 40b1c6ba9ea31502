#include "shell/qt/InterfaceTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <string_view>

#include "ui/Text.h"

namespace parlowen {
namespace {

struct Word {
  std::string_view source;
  UiText text;
};
constexpr Word kWords[] = {
    {"Name", "名称"},
    {"Size", "大小"},
    {"Type", "类型"},
    {"Kind", "种类"},
    {"Date Modified", "修改日期"},
    {"My Computer", "计算机"},
    {"Computer", "计算机"},
    {"Back", "后退"},
    {"Forward", "前进"},
    {"Parent Directory", "上一级文件夹"},
    {"Go back", "后退"},
    {"Go forward", "前进"},
    {"Go to the parent directory", "到上一级文件夹"},
    {"Create New Folder", "新建文件夹"},
    {"Create a New Folder", "新建文件夹"},
    {"&New Folder", "新建文件夹(&N)"},
    {"List View", "列表"},
    {"Detail View", "详细信息"},
    {"Change to list view mode", "列表"},
    {"Change to detail view mode", "详细信息"},
    {"Sidebar", "侧栏"},
    {"Files", "文件"},
    {"&Rename", "改名(&R)"},
    {"&Delete", "删除(&D)"},
    {"Show &hidden files", "显示隐藏文件(&H)"},
    {"Remove", "移去"},
    {"Delete", "删除"},
    {"New Folder", "新文件夹"},
    {"%1 already exists.\nDo you want to replace it?", "%1 已经存在。\n要替换它吗？"},
    {"Folder", "文件夹"},
    {"File Folder", "文件夹"},
    {"File", "文件"},
    {"%1 File", "%1 文件"},
    {"All Files (*)", "所有文件 (*)"},
    {"OK", "确定"},
    {"&OK", "确定"},
    {"Cancel", "取消"},
    {"&Yes", "是(&Y)"},
    {"&No", "否(&N)"},
    {"Close", "关闭"},
    {"&Undo", "撤消(&U)"},
    {"&Redo", "重做(&R)"},
    {"Cu&t", "剪切(&T)"},
    {"&Copy", "复制(&C)"},
    {"&Paste", "粘贴(&P)"},
    {"Select All", "全选"},
    {"Copy &Link Location", "复制链接(&L)"},
    {"Menu", "菜单"},
};

/// The words by their source alone: none of them means two things.
class OwnWords : public QTranslator {
 public:
  using QTranslator::QTranslator;
  bool isEmpty() const override { return false; }
  QString translate(const char*, const char* source, const char*, int) const override {
    for (const Word& word : kWords)
      if (word.source == source) return QString::fromUtf8(word.text.Get());
    return {};
  }
};

}  // namespace

void InstallInterfaceTexts(QCoreApplication& application) {
  auto* words = new OwnWords(&application);
  QCoreApplication::installTranslator(words);
  auto* translation = new QTranslator(&application);
  if (translation->load("qtbase_zh_CN", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(translation);  // asked first, being the last
}

}  // namespace parlowen
