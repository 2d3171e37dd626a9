// The string table and the import dialog that come with the library. A host may offer the same ids in another
// language.
#include "plugin/OwnResources.h"

#include "platform/Window.h"

namespace {

constexpr CStringResource STRINGS[] = {
    {IDS_FILTER_NAME, "EPS 文件过滤器"},
    {IDS_BAD_FORMAT, "EPS文件格式不正确,不能获得文件信息和导入该EPS文件!\f\n"},
    {IDS_IO_ERROR, "文件I/O错误,不能获得此文件的信息和导入该文件!\r\n"},
    {IDS_WARNING, "警告"},
    {IDS_PLAIN_FILE, "EPS文件类型: 纯ASCII EPS文件\r\n"},
    {IDS_PREVIEW_FILE, "EPS文件类型: 带预览的EPS文件\r\n"},
    {IDS_DSC_VERSION, "DSC 版本: %.1f\r\n"},
    {IDS_EPS_VERSION, "EPS 版本: %.1f\r\n"},
    {IDS_LEVEL_UNKNOWN, "Postscript 语言级: (unkonwn)\r\n"},
    {IDS_LANGUAGE_LEVEL, "Postscript 语言版本: %d\r\n"},
    {IDS_TITLE, "文件标题: %s\r\n"},
    {IDS_CREATOR, "EPS输出系统: %s\r\n"},
    {IDS_CREATION_DATE, "文件创建时间: %s\r\n"},
    {IDS_BOUNDING_BOX, "文件嵌入程序的边界盒：(宽度: %.2fmm, 高度: %.2fmm)\r\n"},
    {IDS_FILE_LENGTH, "EPS文件长度: %d 字节\r\n"},
    {IDS_SECTION_LENGTH, "Postscript语言段长度: %d 字节"},
    {IDS_FIRST_ERROR + 0, "文件格式错误"},
    {IDS_FIRST_ERROR + 1, "类型不匹配"},
    {IDS_FIRST_ERROR + 2, "名称未定义"},
    {IDS_FIRST_ERROR + 3, "语法错误"},
    {IDS_FIRST_ERROR + 4, "文件I/O错误"},
    {IDS_FIRST_ERROR + 5, "操作栈下溢"},
    {IDS_FIRST_ERROR + 6, "操作范围错误"},
    {IDS_FIRST_ERROR + 7, "mark 不匹配"},
    {IDS_FIRST_ERROR + 8, "字典栈下溢"},
    {IDS_FIRST_ERROR + 9, "VM 栈上溢"},
    {IDS_FIRST_ERROR + 10, "路径没有起始点"},
    {IDS_FIRST_ERROR + 11, "遇到了系统暂不支持的操作符"},
    {IDS_ERROR_HEAD, "EPS文件解释失败!\n错误类型:"},
    {IDS_ERROR_CAPTION, "出错信息"},
    {IDS_PLEASE_CANCEL, "\r\n请取消本次导入操作."},
};

constexpr CControlTemplate IMPORT_CONTROLS[] = {
    {IDOK, ControlKind::defaultButton, "确定", 69, 148, 50, 15},
    {IDC_STATIC, ControlKind::groupBox, "", 7, 4, 173, 36},
    {IDC_STATIC, ControlKind::staticText,
     "功能提示信息：EPS文件主要包括矢量图形、图像、文字和区域填充效果等部分的信息。"
     "本输入只能提取出文件中包含的矢量图形信息。",
     14, 12, 160, 26},
    {IDC_FILE_INFO, ControlKind::pushButton, "文件信息", 13, 148, 50, 15},
    {IDCANCEL, ControlKind::pushButton, "取消", 123, 148, 50, 15},
    {IDC_INFO_TEXT, ControlKind::multiLineEdit, "", 7, 73, 173, 71},
    {IDC_STATIC, ControlKind::staticText, "直线段重点过滤精度(0.0001-5.0):", 7, 47, 125, 8},
    {IDC_TOLERANCE, ControlKind::edit, "", 133, 45, 37, 12},
    {IDC_FILL_OUTLINE, ControlKind::checkBox, "输入图形填充的轮廓", 8, 59, 88, 10},
};

constexpr CDialogTemplate DIALOGS[] = {{IDD_IMPORT, "EPS 输入", 187, 171, "宋体", 9, IMPORT_CONTROLS}};

}  // namespace

constinit CResourceModule g_OwnResources{STRINGS, DIALOGS};
