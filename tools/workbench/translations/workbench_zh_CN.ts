<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>StepHost::CsvReader</name>
    <message>
        <source>here are more than %1 cells</source>
        <translation>此处已超过 %1 个单元格</translation>
    </message>
    <message>
        <source>a separator or the end of the line has to follow the closing quotation mark</source>
        <translation>右引号之后应为分隔符或行尾</translation>
    </message>
    <message>
        <source>the quotation mark that opens here is never closed</source>
        <translation>此处的左引号没有对应的右引号</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>第 %1 行第 %2 列：%3</translation>
    </message>
</context>
<context>
    <name>StepHost::ErrorTexts</name>
    <message>
        <source>there is no such file</source>
        <translation>没有此文件</translation>
    </message>
    <message>
        <source>this is not a file</source>
        <translation>这不是文件</translation>
    </message>
    <message>
        <source>its interface id is %1, a step plug-in has &quot;%2&quot;</source>
        <translation>它的接口标识是 %1，步骤插件的接口标识是“%2”</translation>
    </message>
    <message>
        <source>it is built for version %1 of the step contract, this host knows version %2</source>
        <translation>它是为步骤约定的版本 %1 构建的，本程序只认得版本 %2</translation>
    </message>
    <message>
        <source>it needs the host capability %1, this host has &quot;%2&quot;</source>
        <translation>它需要宿主能力 %1，本程序提供的是“%2”</translation>
    </message>
    <message>
        <source>prototype %1 is null</source>
        <translation>第 %1 个原型为空</translation>
    </message>
    <message>
        <source>prototype %1 is listed twice</source>
        <translation>第 %1 个原型列出了两次</translation>
    </message>
    <message>
        <source>prototype %1 has a parent, so that the host cannot own it</source>
        <translation>第 %1 个原型有父对象，宿主无法拥有它</translation>
    </message>
    <message>
        <source>a prototype of class %1 has no type id</source>
        <translation>类 %1 的一个原型没有类型标识</translation>
    </message>
    <message>
        <source>its step %1 is outside its own prefix %2</source>
        <translation>它的步骤 %1 不在它自己的前缀 %2 之内</translation>
    </message>
    <message>
        <source>the type id of a step, %1, is longer than %2 characters</source>
        <translation>步骤的类型标识 %1 超过 %2 个字符</translation>
    </message>
    <message>
        <source>it has two steps of type %1</source>
        <translation>它有两个类型为 %1 的步骤</translation>
    </message>
    <message>
        <source>its root object, of class %1, does not implement &quot;%2&quot;</source>
        <translation>它的根对象（类 %1）没有实现“%2”</translation>
    </message>
    <message>
        <source>it threw an exception: %1</source>
        <translation>它抛出了异常：%1</translation>
    </message>
    <message>
        <source>it threw an exception</source>
        <translation>它抛出了异常</translation>
    </message>
    <message>
        <source>plug-in &quot;%1&quot; is refused: %2</source>
        <translation>插件“%1”被拒绝：%2</translation>
    </message>
    <message>
        <source>the step threw an exception: %1</source>
        <translation>步骤抛出了异常：%1</translation>
    </message>
    <message>
        <source>the step threw an exception</source>
        <translation>步骤抛出了异常</translation>
    </message>
    <message>
        <source>the record ends too early</source>
        <translation>记录过早结束</translation>
    </message>
    <message>
        <source>the step leaves %1 bytes of the record</source>
        <translation>步骤没有读完记录，还剩 %1 字节</translation>
    </message>
    <message>
        <source>(the plug-in threw an exception: %1)</source>
        <translation>（插件抛出了异常：%1）</translation>
    </message>
    <message>
        <source>(the plug-in threw an exception)</source>
        <translation>（插件抛出了异常）</translation>
    </message>
    <message>
        <source>abort</source>
        <translation>中止</translation>
    </message>
    <message>
        <source>arithmetic error</source>
        <translation>算术错误</translation>
    </message>
    <message>
        <source>illegal instruction</source>
        <translation>非法指令</translation>
    </message>
    <message>
        <source>segmentation fault</source>
        <translation>段错误</translation>
    </message>
    <message>
        <source>interrupted</source>
        <translation>被中断</translation>
    </message>
    <message>
        <source>terminated</source>
        <translation>被终止</translation>
    </message>
    <message>
        <source>bus error</source>
        <translation>总线错误</translation>
    </message>
    <message>
        <source>killed</source>
        <translation>被强制结束</translation>
    </message>
    <message>
        <source>signal %1</source>
        <translation>信号 %1</translation>
    </message>
    <message>
        <source>the value of %1 cannot be handed over</source>
        <translation>%1 的值无法传递</translation>
    </message>
    <message>
        <source>step %1 threw an exception when it was saved: %2</source>
        <translation>保存步骤 %1 时它抛出了异常：%2</translation>
    </message>
    <message>
        <source>step %1 threw an exception when it was saved</source>
        <translation>保存步骤 %1 时它抛出了异常</translation>
    </message>
    <message>
        <source>step %1 was made</source>
        <translation>正在创建步骤 %1</translation>
    </message>
    <message>
        <source>step %1: the plug-in gives no copy of it</source>
        <translation>步骤 %1：插件没有给出它的副本</translation>
    </message>
    <message>
        <source>a step %1 and its texts were made</source>
        <translation>正在创建步骤 %1 及其文字</translation>
    </message>
    <message>
        <source>the value of %1 cannot be shown: its type is %2</source>
        <translation>%1 的值无法显示：其类型为 %2</translation>
    </message>
    <message>
        <source>the run was not understood</source>
        <translation>无法理解运行请求</translation>
    </message>
    <message>
        <source>the plug-in %1 was loaded</source>
        <translation>正在加载插件 %1</translation>
    </message>
    <message>
        <source>an exception of unknown type</source>
        <translation>未知类型的异常</translation>
    </message>
    <message>
        <source>offset %1: %2</source>
        <translation>偏移 %1：%2</translation>
    </message>
    <message>
        <source>the file ends too early</source>
        <translation>文件过早结束</translation>
    </message>
    <message>
        <source>%1 should have %2 bytes, and %3 are left</source>
        <translation>%1应有 %2 字节，只剩 %3 字节</translation>
    </message>
    <message>
        <source>this is no binary script</source>
        <translation>这不是二进制脚本</translation>
    </message>
    <message>
        <source>the mark of a binary script is damaged, as by a transfer as text</source>
        <translation>二进制脚本的标记已损坏，可能曾被当作文本传输</translation>
    </message>
    <message>
        <source>the form has version %1, this program knows version %2</source>
        <translation>格式版本为 %1，本程序只认得版本 %2</translation>
    </message>
    <message>
        <source>the content should have %1 bytes, and the file has %2; it was cut off</source>
        <translation>内容应有 %1 字节，文件只有 %2 字节；文件被截断了</translation>
    </message>
    <message>
        <source>%1 bytes follow the content</source>
        <translation>内容之后还有 %1 字节</translation>
    </message>
    <message>
        <source>the checksum is not that of the content; the file is damaged</source>
        <translation>校验和与内容不符；文件已损坏</translation>
    </message>
    <message>
        <source>there should be %1 steps in %2 bytes</source>
        <translation>%2 字节中不可能有 %1 个步骤</translation>
    </message>
    <message>
        <source>step %1</source>
        <translation>步骤 %1</translation>
    </message>
    <message>
        <source>the type id of %1</source>
        <translation>%1 的类型标识</translation>
    </message>
    <message>
        <source>step type</source>
        <translation>步骤类型</translation>
    </message>
    <message>
        <source>%1: the enabled flag is %2, it should be 0 or 1</source>
        <translation>%1：启用标志为 %2，应为 0 或 1</translation>
    </message>
    <message>
        <source>the record of %1</source>
        <translation>%1 的记录</translation>
    </message>
    <message>
        <source>the variables</source>
        <translation>变量</translation>
    </message>
    <message>
        <source>%1 bytes follow the variables</source>
        <translation>变量之后还有 %1 字节</translation>
    </message>
    <message>
        <source>the variables: %1</source>
        <translation>变量：%1</translation>
    </message>
    <message>
        <source>the script makes more than 256 MiB</source>
        <translation>脚本超过 256 MiB</translation>
    </message>
    <message>
        <source>an object</source>
        <translation>对象</translation>
    </message>
    <message>
        <source>key</source>
        <translation>键</translation>
    </message>
    <message>
        <source>the key &quot;%1&quot; is missing</source>
        <translation>缺少键“%1”</translation>
    </message>
    <message>
        <source>variable type</source>
        <translation>变量类型</translation>
    </message>
    <message>
        <source>this is %1, the property &quot;%2&quot; takes a value of type %3</source>
        <translation>这是%1，属性“%2”需要类型 %3 的值</translation>
    </message>
    <message>
        <source>property</source>
        <translation>属性</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>true 或 false</translation>
    </message>
    <message>
        <source>the step cannot be created: its prototype gives no clone</source>
        <translation>无法创建步骤：其原型没有给出副本</translation>
    </message>
    <message>
        <source>an array</source>
        <translation>数组</translation>
    </message>
    <message>
        <source>the property &quot;%1&quot; %2</source>
        <translation>属性“%1”%2</translation>
    </message>
    <message>
        <source>the variable %1 is declared already</source>
        <translation>变量 %1 已经声明过</translation>
    </message>
    <message>
        <source>the value of %1 %2</source>
        <translation>%1 的值%2</translation>
    </message>
    <message>
        <source>%1 is no JSON value; a variable of type %2 takes %3</source>
        <translation>%1 不是 JSON 值；类型为 %2 的变量需要%3</translation>
    </message>
    <message>
        <source>%1 gives a new variable no type; declare it in the script</source>
        <translation>%1 没有给新变量类型；请在脚本中声明它</translation>
    </message>
    <message>
        <source>the script declares %1 with the type %2, not as a list</source>
        <translation>脚本把 %1 声明为类型 %2，而不是列表</translation>
    </message>
    <message>
        <source>arrays and maps are nested deeper than %1 levels</source>
        <translation>数组和映射的嵌套超过 %1 层</translation>
    </message>
    <message>
        <source>%1 bytes follow the last value</source>
        <translation>最后一个值之后还有 %1 字节</translation>
    </message>
    <message>
        <source>the byte 0x%1 begins no value of a script</source>
        <translation>字节 0x%1 不是脚本中任何值的开头</translation>
    </message>
    <message>
        <source>the integer does not fit into 64 bits</source>
        <translation>整数超出 64 位</translation>
    </message>
    <message>
        <source>the number is not finite</source>
        <translation>数字不是有限数</translation>
    </message>
    <message>
        <source>the text should have %1 bytes, and %2 bytes are left for them</source>
        <translation>文本应有 %1 字节，只剩 %2 字节</translation>
    </message>
    <message>
        <source>the text is not UTF-8</source>
        <translation>文本不是 UTF-8</translation>
    </message>
    <message>
        <source>the array should have %1 items, and %2 bytes are left for them</source>
        <translation>数组应有 %1 项，只剩 %2 字节</translation>
    </message>
    <message>
        <source>the map should have %1 pairs, and %2 bytes are left for them</source>
        <translation>映射应有 %1 对，只剩 %2 字节</translation>
    </message>
    <message>
        <source>the key of a map is not a text</source>
        <translation>映射的键不是文本</translation>
    </message>
    <message>
        <source>the map has the key %1 already</source>
        <translation>映射中已经有键 %1</translation>
    </message>
    <message>
        <source>the data ends within a value</source>
        <translation>数据在一个值的中间结束</translation>
    </message>
    <message>
        <source>the integer %1 does not fit into 64 bits; write it with &quot;.0&quot; for a double</source>
        <translation>整数 %1 超出 64 位；若要小数，请在末尾写上“.0”</translation>
    </message>
    <message>
        <source>binary data</source>
        <translation>二进制数据</translation>
    </message>
    <message>
        <source>the object has the key %1 already</source>
        <translation>对象中已经有键 %1</translation>
    </message>
    <message>
        <source>%1</source>
        <comment>JSON</comment>
        <extracomment>%1 is what the JSON parser says, in English</extracomment>
        <translation>JSON 语法错误（%1）</translation>
    </message>
    <message>
        <source>arrays and objects are nested deeper than %1 levels</source>
        <translation>数组和对象的嵌套超过 %1 层</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>第 %1 行第 %2 列：%3</translation>
    </message>
    <message>
        <source>at %1: %2</source>
        <translation>在 %1 处：%2</translation>
    </message>
    <message>
        <source>there is a NUL byte after the JSON document</source>
        <translation>JSON 文档之后有一个 NUL 字节</translation>
    </message>
    <message>
        <source>is nested deeper than %1 levels of JSON</source>
        <translation>的 JSON 嵌套超过 %1 层</translation>
    </message>
    <message>
        <source>makes more than 256 MiB of JSON</source>
        <translation>的 JSON 超过 256 MiB</translation>
    </message>
    <message>
        <source> (%1 characters)</source>
        <translation>（%1 个字符）</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>there is no %1 %2; there are %3</source>
        <translation>没有%1 %2；可用的有：%3</translation>
    </message>
    <message>
        <source> ... (%1 characters) ... </source>
        <translation> …（%1 个字符）… </translation>
    </message>
    <message>
        <source>null</source>
        <translation>null</translation>
    </message>
    <message>
        <source>an integer</source>
        <translation>整数</translation>
    </message>
    <message>
        <source>%1 is out of range</source>
        <translation>%1 超出范围</translation>
    </message>
    <message>
        <source>no %1 is %2, the nearest one is %3</source>
        <translation>没有等于 %2 的 %1，最接近的是 %3</translation>
    </message>
    <message>
        <source>a number, &quot;nan&quot;, &quot;inf&quot; or &quot;-inf&quot;</source>
        <translation>数字、“nan”、“inf”或“-inf”</translation>
    </message>
    <message>
        <source>the number is out of range</source>
        <translation>数字超出范围</translation>
    </message>
    <message>
        <source>a string or an array of UTF-16 code units</source>
        <translation>字符串或 UTF-16 代码单元的数组</translation>
    </message>
    <message>
        <source>a string in Base64</source>
        <translation>Base64 字符串</translation>
    </message>
    <message>
        <source>the string is not in Base64</source>
        <translation>字符串不是 Base64</translation>
    </message>
    <message>
        <source>an array of strings</source>
        <translation>字符串数组</translation>
    </message>
    <message>
        <source>this should be an array of a key and a value</source>
        <translation>这里应是由键和值组成的数组</translation>
    </message>
    <message>
        <source>an array of pairs</source>
        <translation>键值对的数组</translation>
    </message>
    <message>
        <source>this should be the name of a type, such as &quot;int&quot;</source>
        <translation>这里应是类型的名称，例如“int”</translation>
    </message>
    <message>
        <source>a value of this type was not written and cannot be read back</source>
        <translation>这种类型的值没有写出，无法读回</translation>
    </message>
    <message>
        <source>an object stands for a value of a special type and has one of these keys: %1</source>
        <translation>对象代表特殊类型的值，其键应为下列之一：%1</translation>
    </message>
    <message>
        <source>a string</source>
        <translation>字符串</translation>
    </message>
    <message>
        <source>this should be a string</source>
        <translation>这里应是字符串</translation>
    </message>
    <message>
        <source>this is %1, a variable of type %2 takes %3</source>
        <translation>这是%1，类型为 %2 的变量需要%3</translation>
    </message>
    <message>
        <source>a 64-bit integer</source>
        <translation>64 位整数</translation>
    </message>
    <message>
        <source>a double</source>
        <translation>小数</translation>
    </message>
    <message>
        <source>this is %1, it should be %2</source>
        <translation>这是%1，应为%2</translation>
    </message>
    <message>
        <source>a variable&apos;s name cannot be empty</source>
        <translation>变量名不能为空</translation>
    </message>
    <message>
        <source>the variable&apos;s name %1 has more than one &quot;$&quot; in front</source>
        <translation>变量名 %1 前面有不止一个“$”</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>数字</translation>
    </message>
    <message>
        <source>an array of arrays</source>
        <translation>数组的数组</translation>
    </message>
    <message>
        <source>a value</source>
        <translation>值</translation>
    </message>
    <message>
        <source>the plug-in gives no copy of the step %1</source>
        <translation>插件没有给出步骤 %1 的副本</translation>
    </message>
    <message>
        <source>the texts of the step %1: %2</source>
        <translation>步骤 %1 的文字：%2</translation>
    </message>
    <message>
        <source>%1; it is passed over</source>
        <translation>%1；已跳过</translation>
    </message>
    <message>
        <source>the plug-in folder &quot;%1&quot; is passed over: others than you and the administrator may write into it</source>
        <translation>已跳过插件文件夹“%1”：除您和管理员之外，其他人也可以写入</translation>
    </message>
    <message>
        <source>version %1</source>
        <translation>版本 %1</translation>
    </message>
    <message>
        <source>it is %1 of %2, and plug-in &quot;%3&quot;, %4 of it, is loaded already</source>
        <translation>它是 %2 的%1，而该插件的%4“%3”已经加载</translation>
    </message>
    <message>
        <source>plug-in &quot;%1&quot; has a step of type %2 already</source>
        <translation>插件“%1”已有类型为 %2 的步骤</translation>
    </message>
    <message>
        <source>%1; it may be of a plug-in that was passed over: %2</source>
        <translation>%1；它可能属于被跳过的插件：%2</translation>
    </message>
    <message>
        <source>plug-in &quot;%1&quot;, %2, and plug-in &quot;%3&quot;, %4, both have an icon %5; steps of one are shown with that of the other</source>
        <translation>插件“%1”（%2）和插件“%3”（%4）都有图标 %5；其中一个插件的步骤会显示另一个的图标</translation>
    </message>
    <message>
        <source>the record is damaged, or one of a newer version of the step</source>
        <translation>记录已损坏，或者来自步骤的更新版本</translation>
    </message>
    <message>
        <source>no process could be started: %1</source>
        <translation>无法启动进程：%1</translation>
    </message>
    <message>
        <source>%1, while %2</source>
        <translation>%1，当时：%2</translation>
    </message>
    <message>
        <source>the process crashed: %1</source>
        <translation>进程崩溃：%1</translation>
    </message>
    <message>
        <source>the process was ended with status %1</source>
        <translation>进程以状态 %1 结束</translation>
    </message>
    <message>
        <source>%1 was read</source>
        <translation>读取%1</translation>
    </message>
    <message>
        <source>%1 was made</source>
        <translation>创建%1</translation>
    </message>
    <message>
        <source>the setting %1 of %2 was changed</source>
        <translation>更改%2的设置 %1</translation>
    </message>
    <message>
        <source>the texts of %1 were made</source>
        <translation>生成%1的文本</translation>
    </message>
    <message>
        <source>the texts of %1: %2</source>
        <translation>%1的文本：%2</translation>
    </message>
    <message>
        <source>%1 was copied</source>
        <translation>复制%1</translation>
    </message>
    <message>
        <source>the plug-in gives no copy of %1</source>
        <translation>插件没有给出%1的副本</translation>
    </message>
    <message>
        <source>%1 was saved</source>
        <translation>保存%1</translation>
    </message>
    <message>
        <source>what it told was not understood</source>
        <translation>无法理解它报告的内容</translation>
    </message>
    <message>
        <source>it took longer than %1 s</source>
        <translation>超过了 %1 秒</translation>
    </message>
    <message>
        <source>step %1 (%2)</source>
        <translation>步骤 %1（%2）</translation>
    </message>
    <message>
        <source>the steps were not tried before: %1</source>
        <translation>未能事先试用这些步骤：%1</translation>
    </message>
    <message>
        <source>quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>hung up</source>
        <translation>挂断</translation>
    </message>
    <message>
        <source>there is no %1 %2; did you mean %3? There are %4</source>
        <translation>没有%1 %2；是不是 %3？可用的有：%4</translation>
    </message>
    <message>
        <source>choice for %1</source>
        <translation>%1 的选项</translation>
    </message>
    <message>
        <source>%1 should have the number of a column behind it, counted from 1</source>
        <translation>%1 后面应为列号，从 1 开始</translation>
    </message>
    <message>
        <source>option</source>
        <translation>选项</translation>
    </message>
    <message>
        <source>line %1, character %2 is not %3 text</source>
        <translation>第 %1 行第 %2 个字符不是 %3 文本</translation>
    </message>
    <message>
        <source>encoding</source>
        <translation>编码</translation>
    </message>
    <message>
        <source>this program cannot read %1</source>
        <translation>本程序无法读取 %1</translation>
    </message>
    <message>
        <source>Item %1 has a line break, which a text file with one item a line cannot hold. Choose a .csv file.</source>
        <translation>第 %1 项含有换行，每行一项的文本文件无法保存。请选择 .csv 文件。</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>row %1, column %2: %3</source>
        <translation>第 %1 行第 %2 列：%3</translation>
    </message>
    <message>
        <source>row %1 has %2 columns; choose what a list takes of them: all cells, the rows, or one column (as=cells, as=rows, as=column:1)</source>
        <translation>第 %1 行有 %2 列；请选择列表取什么：所有单元格、各行或某一列（as=cells、as=rows、as=column:1）</translation>
    </message>
    <message>
        <source>it looks like %1: choose the encoding, as with encoding=%2</source>
        <translation>看起来是 %1：请选择编码，例如 encoding=%2</translation>
    </message>
    <message>
        <source>line %1: here are more than %2 lines</source>
        <translation>第 %1 行：已超过 %2 行</translation>
    </message>
    <message>
        <source>row %1, column %2 holds a separator or a line break, which this form of text cannot; choose a .csv file</source>
        <translation>第 %1 行第 %2 列含有分隔符或换行，这种文本无法保存；请选择 .csv 文件</translation>
    </message>
</context>
<context>
    <name>StepHost::FileErrors</name>
    <message>
        <source>No such file or directory</source>
        <translation>没有此文件或文件夹</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>没有权限</translation>
    </message>
    <message>
        <source>Operation not permitted</source>
        <translation>不允许此操作</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>设备上没有剩余空间</translation>
    </message>
    <message>
        <source>Disk quota exceeded</source>
        <translation>超出磁盘配额</translation>
    </message>
    <message>
        <source>Read-only file system</source>
        <translation>文件系统为只读</translation>
    </message>
    <message>
        <source>Is a directory</source>
        <translation>这是文件夹</translation>
    </message>
    <message>
        <source>Not a directory</source>
        <translation>不是文件夹</translation>
    </message>
    <message>
        <source>File name too long</source>
        <translation>文件名过长</translation>
    </message>
    <message>
        <source>File too large</source>
        <translation>文件过大</translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation>打开的文件过多</translation>
    </message>
    <message>
        <source>Input/output error</source>
        <translation>输入/输出错误</translation>
    </message>
    <message>
        <source>Filename refers to a directory</source>
        <translation>文件名指向一个文件夹</translation>
    </message>
    <message>
        <source>the file has no name</source>
        <translation>文件没有名称</translation>
    </message>
    <message>
        <source>standard input</source>
        <translation>标准输入</translation>
    </message>
    <message>
        <source>this is a folder, not a file</source>
        <translation>这是文件夹，不是文件</translation>
    </message>
    <message>
        <source>the file holds more than 256 MiB</source>
        <translation>文件超过 256 MiB</translation>
    </message>
    <message>
        <source>its record does not hold all its properties, so the binary form would lose some</source>
        <translation>其记录未包含全部属性，二进制形式会丢失一部分</translation>
    </message>
    <message>
        <source>it has state beside its properties, which JSON would lose</source>
        <translation>它在属性之外还有状态，JSON 会丢失这些状态</translation>
    </message>
    <message>
        <source>step %1 (%2): %3</source>
        <translation>步骤 %1（%2）：%3</translation>
    </message>
</context>
<context>
    <name>StepHost::FileReplacement</name>
    <message>
        <source>group</source>
        <translation>所属组</translation>
    </message>
    <message>
        <source>owner</source>
        <translation>所有者</translation>
    </message>
    <message>
        <source>mode</source>
        <translation>权限</translation>
    </message>
    <message>
        <source>hard links</source>
        <translation>硬链接</translation>
    </message>
    <message>
        <source>the old file&apos;s %1 could not be kept</source>
        <translation>未能保留原文件的%1</translation>
    </message>
    <message>
        <source> and </source>
        <translation>和</translation>
    </message>
</context>
<context>
    <name>StepHost::ItemValue</name>
    <message>
        <source>“%1” is not a list such as [1, &quot;a&quot;, true]: %2</source>
        <translation>“%1”不是列表（例如 [1, &quot;a&quot;, true]）：%2</translation>
    </message>
    <message>
        <source>“%1” is not a list such as [1, &quot;a&quot;, true]</source>
        <translation>“%1”不是列表（例如 [1, &quot;a&quot;, true]）</translation>
    </message>
    <message>
        <source>“%1” is not an integer between -9223372036854775808 and 9223372036854775807</source>
        <translation>“%1”不是 -9223372036854775808 到 9223372036854775807 之间的整数</translation>
    </message>
    <message>
        <source>“%1” is not a number such as 2.5 or 1e3</source>
        <translation>“%1”不是数字（例如 2.5 或 1e3）</translation>
    </message>
    <message>
        <source>“%1” is neither true nor false</source>
        <translation>“%1”既不是 true 也不是 false</translation>
    </message>
    <message>
        <source>a value of this type cannot be written as text</source>
        <translation>此类型的值无法写成文本</translation>
    </message>
    <message>
        <source>“%1” is not a whole number</source>
        <translation>“%1”不是整数</translation>
    </message>
</context>
<context>
    <name>StepHost::RunProcess</name>
    <message>
        <source>it was stopped in the middle</source>
        <translation>步骤在执行中被停止</translation>
    </message>
    <message>
        <source>what it told of the run was not understood</source>
        <translation>无法理解进程报告的运行情况</translation>
    </message>
    <message>
        <source>%1: it took longer than %2 s, while %3</source>
        <translation>%1：超过了 %2 秒，当时：%3</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>%1 printed: %2</source>
        <translation>%1 输出了：%2</translation>
    </message>
</context>
<context>
    <name>StepHost::StepProblems</name>
    <message>
        <source>No variable is chosen.</source>
        <translation>尚未选择变量。</translation>
    </message>
    <message>
        <source>There is no variable “%1” yet.</source>
        <translation>还没有变量“%1”。</translation>
    </message>
    <message>
        <source>“%1” is not a list.</source>
        <translation>“%1”不是列表。</translation>
    </message>
    <message>
        <source>Not an integer. The step may skip its work.</source>
        <translation>不是整数，步骤可能会跳过。</translation>
    </message>
    <message>
        <source>A reference. Not every step looks one up here.</source>
        <translation>这是引用。并非每个步骤都会在此解析引用。</translation>
    </message>
    <message>
        <source>The present value, %1, is none of the choices.</source>
        <translation>当前值 %1 不在选项之中。</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>The variable has no “%1”, so this is empty.</source>
        <translation>此变量没有“%1”，因此结果为空。</translation>
    </message>
</context>
<context>
    <name>StepHost::VariableEdits</name>
    <message>
        <source>A variable needs a name.</source>
        <translation>变量需要名称。</translation>
    </message>
    <message>
        <source>The name of a variable cannot begin with “$”.</source>
        <translation>变量名称不能以“$”开头。</translation>
    </message>
    <message>
        <source>There is a variable “%1” already.</source>
        <translation>已经有变量“%1”。</translation>
    </message>
</context>
<context>
    <name>StepHost::VariableUses</name>
    <message>
        <source>Step %1 uses the variable as %2, which cannot be said of one called %3.</source>
        <translation>第 %1 步以 %2 使用此变量，名为 %3 的变量不能这样写。</translation>
    </message>
</context>
<context>
    <name>Workbench::BoolEditor</name>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
</context>
<context>
    <name>Workbench::Breakpoints</name>
    <message>
        <source>The breakpoints are not kept: %1: %2</source>
        <translation>断点未能保存：%1：%2</translation>
    </message>
</context>
<context>
    <name>Workbench::DifferenceDialog</name>
    <message>
        <source>Difference</source>
        <translation>差异</translation>
    </message>
    <message>
        <source>Both are the same script; only the way it is written differs.</source>
        <translation>两者是同一个脚本，只是写法不同。</translation>
    </message>
    <message>
        <source>− only in %1
+ only in %2</source>
        <translation>− 仅在%1中
+ 仅在%2中</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>Workbench::FileActions</name>
    <message>
        <source>Unsaved changes</source>
        <translation>未保存的更改</translation>
    </message>
    <message>
        <source>The script has changes that are not saved. Save them?</source>
        <translation>脚本有未保存的更改。要保存吗？</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>放弃</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Open script</source>
        <translation>打开脚本</translation>
    </message>
    <message>
        <source>Scripts (*.json *.qms);;All files (*)</source>
        <translation>脚本 (*.json *.qms);;所有文件 (*)</translation>
    </message>
    <message>
        <source>Opened %1</source>
        <translation>已打开 %1</translation>
    </message>
    <message>
        <source>The script cannot be opened</source>
        <translation>无法打开脚本</translation>
    </message>
    <message>
        <source>Binary script (*.qms)</source>
        <translation>二进制脚本 (*.qms)</translation>
    </message>
    <message>
        <source>Save script</source>
        <translation>保存脚本</translation>
    </message>
    <message>
        <source>Script as JSON (*.json)</source>
        <translation>JSON 脚本 (*.json)</translation>
    </message>
    <message>
        <source>The script cannot be saved</source>
        <translation>无法保存脚本</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>已保存 %1</translation>
    </message>
    <message>
        <source>The file has changed</source>
        <translation>文件已更改</translation>
    </message>
    <message>
        <source>Another program has changed %1 since it was opened or saved here. Saving replaces what it wrote.</source>
        <translation>自从在此打开或保存 %1 之后，另一个程序更改了它。保存会替换其写入的内容。</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>替换</translation>
    </message>
    <message>
        <source>Save as…</source>
        <translation>另存为…</translation>
    </message>
    <message>
        <source>Show difference</source>
        <translation>查看差异</translation>
    </message>
    <message>
        <source>Another program has changed %1.</source>
        <translation>另一个程序更改了 %1。</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>重新载入</translation>
    </message>
    <message>
        <source>Keep mine</source>
        <translation>保留我的内容</translation>
    </message>
    <message>
        <source>The difference cannot be shown</source>
        <translation>无法显示差异</translation>
    </message>
    <message>
        <source>the file</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>the window</source>
        <translation>窗口</translation>
    </message>
    <message>
        <source>Reloading the file drops the changes that are not saved.</source>
        <translation>重新载入文件会丢弃未保存的更改。</translation>
    </message>
    <message>
        <source>The script is still here, and can be saved in another place.</source>
        <translation>脚本仍在这里，可以保存到别的位置。</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>新建(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>打开(&amp;O)…</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>最近的文件(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>Save &amp;as…</source>
        <translation>另存为(&amp;A)…</translation>
    </message>
    <message>
        <source>None yet</source>
        <translation>暂无</translation>
    </message>
</context>
<context>
    <name>Workbench::FindBar</name>
    <message>
        <source>Find</source>
        <translation>查找</translation>
    </message>
    <message>
        <source>Find previous (%1)</source>
        <translation>查找上一个 (%1)</translation>
    </message>
    <message>
        <source>Find next (%1)</source>
        <translation>查找下一个 (%1)</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>未找到</translation>
    </message>
</context>
<context>
    <name>Workbench::ImportDialog</name>
    <message>
        <source>Import “%1”</source>
        <translation>导入“%1”</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Encoding</source>
        <translation>编码</translation>
    </message>
    <message>
        <source>Take</source>
        <translation>取用</translation>
    </message>
    <message>
        <source>Lines</source>
        <translation>各行文字</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>各行</translation>
    </message>
    <message>
        <source>Rows, each as a list</source>
        <translation>各行，每行成为一个列表</translation>
    </message>
    <message>
        <source>All cells, row by row</source>
        <translation>所有单元格，逐行排列</translation>
    </message>
    <message>
        <source>One column</source>
        <translation>某一列</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>列</translation>
    </message>
    <message>
        <source>Separator</source>
        <translation>分隔符</translation>
    </message>
    <message>
        <source>Comma</source>
        <translation>逗号</translation>
    </message>
    <message>
        <source>Semicolon</source>
        <translation>分号</translation>
    </message>
    <message>
        <source>Tabulator</source>
        <translation>制表符</translation>
    </message>
    <message>
        <source>Vertical bar</source>
        <translation>竖线</translation>
    </message>
    <message>
        <source>Blank</source>
        <translation>空格</translation>
    </message>
    <message>
        <source>Quotation marks</source>
        <translation>引号</translation>
    </message>
    <message>
        <source>Double: &quot;</source>
        <translation>双引号：&quot;</translation>
    </message>
    <message>
        <source>Single: &apos;</source>
        <translation>单引号：&apos;</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
    <message>
        <source>The first row names the columns</source>
        <translation>第一行是列名</translation>
    </message>
    <message>
        <source>Type of the selected columns</source>
        <translation>所选列的类型</translation>
    </message>
    <message>
        <source>Present values</source>
        <translation>现有的值</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>替换</translation>
    </message>
    <message>
        <source>Keep, and append to them</source>
        <translation>保留，追加在后面</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>预览</translation>
    </message>
    <message>
        <source>The file is not certain to be %1. When characters look wrong, choose another encoding.</source>
        <translation>文件的编码不一定是 %1。如果文字显示不正确，请选择其他编码。</translation>
    </message>
</context>
<context>
    <name>Workbench::ImportPreview</name>
    <message>
        <source>Automatic</source>
        <translation>自动</translation>
    </message>
    <message>
        <source>%1
not taken</source>
        <translation>%1
不取用</translation>
    </message>
    <message>
        <source>%1
automatic: %2</source>
        <translation>%1
自动：%2</translation>
    </message>
</context>
<context>
    <name>Workbench::IntegerEditor</name>
    <message>
        <source>An integer</source>
        <translation>整数</translation>
    </message>
</context>
<context>
    <name>Workbench::ItemDifferenceModel</name>
    <message>
        <source>No differences</source>
        <translation>没有不同</translation>
    </message>
    <message>
        <source>, </source>
        <translation>，</translation>
    </message>
    <message>
        <source>added</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>removed</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>更改</translation>
    </message>
    <message>
        <source>moved</source>
        <translation>移动</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>之前</translation>
    </message>
    <message>
        <source>After</source>
        <translation>之后</translation>
    </message>
    <message>
        <source>%1 added</source>
        <translation>添加 %1 项</translation>
    </message>
    <message>
        <source>%1 removed</source>
        <translation>移除 %1 项</translation>
    </message>
    <message>
        <source>%1 changed</source>
        <translation>更改 %1 项</translation>
    </message>
    <message>
        <source>%1 moved</source>
        <translation>移动 %1 项</translation>
    </message>
</context>
<context>
    <name>Workbench::ListValueModel</name>
    <message numerus="yes">
        <source>%n item(s) kept the old type: %1</source>
        <translation>
            <numerusform>%n 项保留原类型：%1</numerusform>
        </translation>
    </message>
    <message>
        <source>Value</source>
        <translation>值</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
</context>
<context>
    <name>Workbench::LogModel</name>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>步骤</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>消息</translation>
    </message>
    <message>
        <source>Warning: %1</source>
        <translation>警告：%1</translation>
    </message>
</context>
<context>
    <name>Workbench::LogPane</name>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Clear log</source>
        <translation>清空日志</translation>
    </message>
</context>
<context>
    <name>Workbench::MainWindow</name>
    <message>
        <source>Tools</source>
        <translation>工具栏</translation>
    </message>
    <message>
        <source>Go to the script</source>
        <translation>转到脚本</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>编辑(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>撤销(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>重做(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Run</source>
        <translation>运行(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;About the workbench</source>
        <translation>关于工作台(&amp;A)</translation>
    </message>
    <message>
        <source>%1[*] – Quillmap workbench</source>
        <translation>%1[*] – Quillmap 工作台</translation>
    </message>
    <message>
        <source>New script</source>
        <translation>新脚本</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>About the workbench</source>
        <translation>关于工作台</translation>
    </message>
    <message>
        <source>The Quillmap workbench, version %1: a place to try out the steps of plug-ins by hand.</source>
        <translation>Quillmap 工作台 %1 版：亲手试用插件步骤的地方。</translation>
    </message>
    <message>
        <source>V&amp;ariables</source>
        <translation>变量(&amp;A)</translation>
    </message>
    <message>
        <source>The script does not have this step any more.</source>
        <translation>脚本中已没有此步骤。</translation>
    </message>
    <message>
        <source>Changes that are not saved would be lost in a crash: %1</source>
        <translation>程序崩溃时，未保存的更改会丢失：%1</translation>
    </message>
    <message>
        <source>&amp;Find and replace</source>
        <translation>查找和替换(&amp;F)</translation>
    </message>
</context>
<context>
    <name>Workbench::PalettePane</name>
    <message>
        <source>Search by name or type</source>
        <translation>按名称或类型搜索</translation>
    </message>
    <message>
        <source>Search steps</source>
        <translation>搜索步骤</translation>
    </message>
    <message>
        <source>Steps on offer</source>
        <translation>可用的步骤</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
</context>
<context>
    <name>Workbench::PaneDocks</name>
    <message>
        <source>Go to “%1”</source>
        <translation>转到“%1”</translation>
    </message>
    <message>
        <source>Palette</source>
        <translation>步骤库</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Variables</source>
        <translation>变量</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>Problems</source>
        <translation>问题</translation>
    </message>
    <message>
        <source>Problems (%1)</source>
        <translation>问题 (%1)</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>查找</translation>
    </message>
</context>
<context>
    <name>Workbench::PluginStart</name>
    <message>
        <source>There is no plug-in in %1.</source>
        <translation>%1 中没有插件。</translation>
    </message>
</context>
<context>
    <name>Workbench::ProblemsModel</name>
    <message>
        <source>Change the setting</source>
        <translation>更改设置</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>步骤</translation>
    </message>
    <message>
        <source>Problem</source>
        <translation>问题</translation>
    </message>
    <message>
        <source>What helps</source>
        <translation>解决办法</translation>
    </message>
</context>
<context>
    <name>Workbench::ProblemsPane</name>
    <message>
        <source>Problems</source>
        <translation>问题</translation>
    </message>
</context>
<context>
    <name>Workbench::PropertyEditor</name>
    <message>
        <source>Some characters are not seen in the field: %1</source>
        <translation>输入框中有看不见的字符：%1</translation>
    </message>
</context>
<context>
    <name>Workbench::PropertyPane</name>
    <message>
        <source>Select a step to see its settings.</source>
        <translation>选择一个步骤以查看其设置。</translation>
    </message>
</context>
<context>
    <name>Workbench::Recovery</name>
    <message>
        <source>%1 holds no script</source>
        <translation>%1 中没有脚本</translation>
    </message>
</context>
<context>
    <name>Workbench::RecoveryOffer</name>
    <message>
        <source>A new script was not saved when the program ended: %1.</source>
        <translation>程序结束时有一个新脚本未保存：%1。</translation>
    </message>
    <message>
        <source>%1 was not saved when the program ended: %2.</source>
        <translation>程序结束时 %1 未保存：%2。</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>恢复</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>以后再说</translation>
    </message>
    <message>
        <source>The script cannot be restored</source>
        <translation>无法恢复脚本</translation>
    </message>
</context>
<context>
    <name>Workbench::ReferenceEditor</name>
    <message>
        <source>A value, or $variable</source>
        <translation>值，或 $变量</translation>
    </message>
</context>
<context>
    <name>Workbench::RunActions</name>
    <message>
        <source>&amp;Run</source>
        <translation>运行(&amp;R)</translation>
    </message>
    <message>
        <source>Run to &amp;here</source>
        <translation>运行到此(&amp;H)</translation>
    </message>
    <message>
        <source>Run &amp;step</source>
        <translation>单步运行(&amp;S)</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>停止(&amp;T)</translation>
    </message>
    <message>
        <source>Run the script up to the current step (%1)</source>
        <translation>运行脚本到当前步骤为止（%1）</translation>
    </message>
    <message>
        <source>Run the current step alone, on what the last run left (%1)</source>
        <translation>在上次运行的结果上只运行当前步骤（%1）</translation>
    </message>
    <message>
        <source>&amp;Clear results</source>
        <translation>清除结果(&amp;C)</translation>
    </message>
    <message>
        <source>Forget what the last run did and left in the variables (%1)</source>
        <translation>清除上次运行的情况和它留在变量中的值（%1）</translation>
    </message>
    <message>
        <source>Stop before the next step; once more: at once (%1)</source>
        <translation>在下一步之前停止；再按一次则立即停止（%1）</translation>
    </message>
    <message>
        <source>The run stops before its next step. Stop again to end it at once.</source>
        <translation>将在下一步之前停止运行。再按一次“停止”则立即结束。</translation>
    </message>
    <message>
        <source>Run the whole script on its start values, or go on with a run that waits (%1)</source>
        <translation>用初始值运行整个脚本，或继续暂停的运行 (%1)</translation>
    </message>
    <message>
        <source>St&amp;ep</source>
        <translation>单步(&amp;E)</translation>
    </message>
    <message>
        <source>Begin a run that waits before each step, or run the step that is next (%1)</source>
        <translation>开始在每个步骤前暂停的运行，或运行下一个步骤 (%1)</translation>
    </message>
    <message>
        <source>S&amp;kip once</source>
        <translation>跳过一次(&amp;K)</translation>
    </message>
    <message>
        <source>Leave the step that is next out this once (%1)</source>
        <translation>本次不运行下一个步骤 (%1)</translation>
    </message>
    <message>
        <source>Start &amp;over</source>
        <translation>重新开始(&amp;O)</translation>
    </message>
    <message>
        <source>Give the run up and wait before the first step of a new one (%1)</source>
        <translation>放弃本次运行，从头开始并停在第一个步骤之前 (%1)</translation>
    </message>
    <message>
        <source>&amp;Breakpoint</source>
        <translation>断点(&amp;B)</translation>
    </message>
    <message>
        <source>Have runs wait before the selected steps, or not any more (%1)</source>
        <translation>让运行在所选步骤前暂停，或不再暂停 (%1)</translation>
    </message>
    <message>
        <source>C&amp;lear breakpoints</source>
        <translation>清除断点(&amp;L)</translation>
    </message>
    <message>
        <source>Take all breakpoints away (%1)</source>
        <translation>清除所有断点 (%1)</translation>
    </message>
</context>
<context>
    <name>Workbench::RunSession</name>
    <message>
        <source>The step failed: %1</source>
        <translation>步骤出错：%1</translation>
    </message>
    <message>
        <source>%1 wrote, %2 skipped, %3 disabled, in %4 ms</source>
        <translation>%1 步已写入，%2 步已跳过，%3 步已停用，用时 %4 毫秒</translation>
    </message>
    <message>
        <source>Run completed: %1</source>
        <translation>运行完成：%1</translation>
    </message>
    <message>
        <source>Run stopped: %1</source>
        <translation>运行已停止：%1</translation>
    </message>
    <message>
        <source>Run ended by a step that failed: %1</source>
        <translation>运行因步骤出错而结束：%1</translation>
    </message>
    <message numerus="yes">
        <source>%n process(es) that the steps left running were ended</source>
        <translation>
            <numerusform>步骤遗留的 %n 个进程已被结束</numerusform>
        </translation>
    </message>
    <message>
        <source>The step wrote nothing and gave no reason.</source>
        <translation>步骤没有写入任何内容，也没有说明原因。</translation>
    </message>
    <message>
        <source>The plug-ins printed: %1</source>
        <translation>插件输出：%1</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1；%2</translation>
    </message>
    <message>
        <source>The run could not begin: %1</source>
        <translation>无法开始运行：%1</translation>
    </message>
    <message>
        <source>Passed over this once</source>
        <translation>本次跳过此步骤</translation>
    </message>
    <message>
        <source>While paused: %1</source>
        <translation>暂停时：%1</translation>
    </message>
    <message>
        <source>Paused before this step</source>
        <translation>已在此步骤前暂停</translation>
    </message>
</context>
<context>
    <name>Workbench::ScriptDocument</name>
    <message>
        <source>Place “%1”</source>
        <translation>放置“%1”</translation>
    </message>
    <message numerus="yes">
        <source>Duplicate %n step(s)</source>
        <translation>
            <numerusform>复制 %n 个步骤</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Delete %n step(s)</source>
        <translation>
            <numerusform>删除 %n 个步骤</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Move %n step(s)</source>
        <translation>
            <numerusform>移动 %n 个步骤</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Enable %n step(s)</source>
        <translation>
            <numerusform>启用 %n 个步骤</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Disable %n step(s)</source>
        <translation>
            <numerusform>停用 %n 个步骤</numerusform>
        </translation>
    </message>
    <message>
        <source>Change “%1”</source>
        <translation>更改“%1”</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>step %1: the plug-in gives no copy of it</source>
        <translation>步骤 %1：插件没有给出它的副本</translation>
    </message>
    <message>
        <source>The plug-in gives no copy of the step %1.</source>
        <translation>插件没有给出步骤 %1 的副本。</translation>
    </message>
    <message>
        <source>These steps are not placed: %1</source>
        <translation>未放入这些步骤：%1</translation>
    </message>
    <message>
        <source>Step %1 keeps its setting “%2”: %3</source>
        <translation>步骤 %1 的设置“%2”保持不变：%3</translation>
    </message>
    <message>
        <source>The present script was changed meanwhile.</source>
        <translation>当前脚本在此期间被更改了。</translation>
    </message>
</context>
<context>
    <name>Workbench::ScriptEdits</name>
    <message>
        <source>Rename “%1” to “%2”</source>
        <translation>将“%1”重命名为“%2”</translation>
    </message>
    <message>
        <source>These are no steps: %1</source>
        <translation>这不是步骤：%1</translation>
    </message>
    <message numerus="yes">
        <source>Paste %n step(s)</source>
        <translation>
            <numerusform>粘贴 %n 个步骤</numerusform>
        </translation>
    </message>
    <message>
        <source>Replace “%1”</source>
        <translation>替换“%1”</translation>
    </message>
</context>
<context>
    <name>Workbench::ScriptModel</name>
    <message>
        <source>the run waits before it</source>
        <translation>运行停在此步骤之前</translation>
    </message>
    <message>
        <source>with a breakpoint</source>
        <translation>有断点</translation>
    </message>
</context>
<context>
    <name>Workbench::ScriptPane</name>
    <message>
        <source>Steps of the script</source>
        <translation>脚本的步骤</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>剪切(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>粘贴(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>删除(&amp;D)</translation>
    </message>
    <message>
        <source>Move d&amp;own</source>
        <translation>下移(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Enable or disable</source>
        <translation>启用或停用(&amp;E)</translation>
    </message>
    <message>
        <source>The script has no steps yet.
Drag one here from the palette, or double-click it there.</source>
        <translation>脚本还没有步骤。
从步骤库拖到这里，或在那里双击。</translation>
    </message>
    <message>
        <source>Dup&amp;licate</source>
        <translation>创建副本(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Move up</source>
        <translation>上移(&amp;M)</translation>
    </message>
    <message>
        <source>Paste steps</source>
        <translation>粘贴步骤</translation>
    </message>
    <message numerus="yes">
        <source>The steps bring %n variable(s) along of which this script has another one: %1</source>
        <translation>
            <numerusform>这些步骤带来 %n 个变量，而此脚本已有同名的不同变量：%1</numerusform>
        </translation>
    </message>
    <message>
        <source>Use the one here</source>
        <translation>使用此处的变量</translation>
    </message>
    <message>
        <source>Bring under a new name</source>
        <translation>以新名称带入</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>Workbench::SearchModel</name>
    <message>
        <source>Step</source>
        <translation>步骤</translation>
    </message>
    <message>
        <source>Name of the variable</source>
        <translation>变量的名称</translation>
    </message>
    <message numerus="yes">
        <source>Start value, %n time(s)</source>
        <translation>
            <numerusform>初始值，%n 处</numerusform>
        </translation>
    </message>
    <message>
        <source>Where</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>What</source>
        <translation>内容</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文本</translation>
    </message>
</context>
<context>
    <name>Workbench::SearchPane</name>
    <message>
        <source>Find</source>
        <translation>查找</translation>
    </message>
    <message>
        <source>Replace with</source>
        <translation>替换为</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>区分大小写</translation>
    </message>
    <message>
        <source>Whole texts only</source>
        <translation>仅整个文本</translation>
    </message>
    <message>
        <source>Replace all</source>
        <translation>全部替换</translation>
    </message>
    <message>
        <source>Replace in settings and start values; “Undo” takes it back as a whole</source>
        <translation>在设置和初始值中替换；“撤销”可整体还原</translation>
    </message>
    <message>
        <source>Places found</source>
        <translation>找到的位置</translation>
    </message>
    <message numerus="yes">
        <source>Found in %n place(s)</source>
        <translation>
            <numerusform>在 %n 处找到</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Replaced in %n text(s)</source>
        <translation>
            <numerusform>已在 %n 个文本中替换</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>“%1” is used in %n setting(s)</source>
        <translation>
            <numerusform>%n 个设置使用了“%1”</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Workbench::StepDelegate</name>
    <message>
        <source>running…</source>
        <translation>运行中…</translation>
    </message>
    <message>
        <source>next</source>
        <translation>下一步</translation>
    </message>
</context>
<context>
    <name>Workbench::StepRow</name>
    <message>
        <source>wrote</source>
        <translation>已写入</translation>
    </message>
    <message>
        <source>skipped</source>
        <translation>已跳过</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>出错</translation>
    </message>
    <message>
        <source>disabled</source>
        <translation>已停用</translation>
    </message>
    <message>
        <source>Step %1: %2</source>
        <translation>步骤 %1：%2</translation>
    </message>
    <message>
        <source>not enabled</source>
        <translation>未启用</translation>
    </message>
    <message>
        <source>running…</source>
        <translation>运行中…</translation>
    </message>
    <message>
        <source>%1, before its settings were changed</source>
        <translation>%1（更改设置之前）</translation>
    </message>
    <message>
        <source>The outcome is from before the settings were changed.</source>
        <translation>此结果是更改设置之前的结果。</translation>
    </message>
</context>
<context>
    <name>Workbench::TableValueModel</name>
    <message numerus="yes">
        <source>%n cell(s) kept the old type: %1</source>
        <translation>
            <numerusform>%n 个单元格保留原类型：%1</numerusform>
        </translation>
    </message>
    <message>
        <source>Behind the end of the row</source>
        <translation>在行尾之后</translation>
    </message>
</context>
<context>
    <name>Workbench::TextEditor</name>
    <message>
        <source>A value of this type cannot be edited as text.</source>
        <translation>此类型的值无法以文本编辑。</translation>
    </message>
    <message>
        <source>This is no value of the type “%1”; the setting keeps its old one.</source>
        <translation>这不是“%1”类型的值，设置保持原值。</translation>
    </message>
</context>
<context>
    <name>Workbench::TypeNames</name>
    <message>
        <source>Table</source>
        <translation>表格</translation>
    </message>
    <message>
        <source>Undeclared</source>
        <translation>未声明</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>空</translation>
    </message>
    <message>
        <source>Integer</source>
        <translation>整数</translation>
    </message>
    <message>
        <source>Decimal</source>
        <translation>小数</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文本</translation>
    </message>
    <message>
        <source>Yes/no</source>
        <translation>布尔</translation>
    </message>
    <message>
        <source>List</source>
        <translation>列表</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>Create list “%1”</source>
        <translation>创建列表“%1”</translation>
    </message>
    <message>
        <source>Create integer “%1”</source>
        <translation>创建整数“%1”</translation>
    </message>
    <message>
        <source>Create text “%1”</source>
        <translation>创建文本“%1”</translation>
    </message>
    <message>
        <source>Create variable “%1”</source>
        <translation>创建变量“%1”</translation>
    </message>
</context>
<context>
    <name>Workbench::ValueDialog</name>
    <message>
        <source>Table “%1”</source>
        <translation>表格“%1”</translation>
    </message>
    <message>
        <source>List “%1”</source>
        <translation>列表“%1”</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Import…</source>
        <translation>导入…</translation>
    </message>
    <message>
        <source>Export…</source>
        <translation>导出…</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message numerus="yes">
        <source>%n row(s)</source>
        <translation>
            <numerusform>%n 行</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n item(s)</source>
        <translation>
            <numerusform>%n 项</numerusform>
        </translation>
    </message>
    <message>
        <source>Unsaved changes</source>
        <translation>未保存的更改</translation>
    </message>
    <message>
        <source>Keep what was changed in this dialog?</source>
        <translation>要保留在此对话框中所做的更改吗？</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>保留</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>放弃</translation>
    </message>
    <message>
        <source>Text and CSV files (*.txt *.csv *.tsv);;All files (*)</source>
        <translation>文本和 CSV 文件 (*.txt *.csv *.tsv);;所有文件 (*)</translation>
    </message>
    <message>
        <source>Text files (*.txt);;CSV files (*.csv);;Tab-separated files (*.tsv);;JSON files (*.json)</source>
        <translation>文本文件 (*.txt);;CSV 文件 (*.csv);;制表符分隔文件 (*.tsv);;JSON 文件 (*.json)</translation>
    </message>
</context>
<context>
    <name>Workbench::ValueEditor</name>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
    <message>
        <source>Add row</source>
        <translation>添加行</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Remove rows</source>
        <translation>删除行</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Add column</source>
        <translation>添加列</translation>
    </message>
    <message>
        <source>Remove columns</source>
        <translation>删除列</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>上移</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>下移</translation>
    </message>
    <message>
        <source>Sort</source>
        <translation>排序</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>编辑</translation>
    </message>
    <message>
        <source>Add row above</source>
        <translation>在上方添加行</translation>
    </message>
    <message>
        <source>Add above</source>
        <translation>在上方添加</translation>
    </message>
    <message>
        <source>Sort backwards</source>
        <translation>倒序排列</translation>
    </message>
    <message>
        <source>Find…</source>
        <translation>查找…</translation>
    </message>
    <message>
        <source>Find next</source>
        <translation>查找下一个</translation>
    </message>
    <message>
        <source>Find previous</source>
        <translation>查找上一个</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>剪切</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>粘贴</translation>
    </message>
    <message>
        <source>Fill down</source>
        <translation>向下填充</translation>
    </message>
    <message>
        <source>Empty cells</source>
        <translation>清空单元格</translation>
    </message>
    <message>
        <source>Remove selected</source>
        <translation>移除所选项</translation>
    </message>
    <message>
        <source>Convert what is selected to another type</source>
        <translation>把所选内容转换为其他类型</translation>
    </message>
    <message>
        <source>Type: %1</source>
        <translation>类型：%1</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
</context>
<context>
    <name>Workbench::ValueModel</name>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
</context>
<context>
    <name>Workbench::ValueViewer</name>
    <message>
        <source>Find…</source>
        <translation>查找…</translation>
    </message>
    <message>
        <source>Find next</source>
        <translation>查找下一个</translation>
    </message>
    <message>
        <source>Find previous</source>
        <translation>查找上一个</translation>
    </message>
    <message>
        <source>Value of “%1”</source>
        <translation>“%1”的值</translation>
    </message>
    <message>
        <source>After the last run</source>
        <translation>上次运行之后</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>之前</translation>
    </message>
    <message>
        <source>What changed</source>
        <translation>变化</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Only what differs</source>
        <translation>只显示不同之处</translation>
    </message>
</context>
<context>
    <name>Workbench::VariablesModel</name>
    <message numerus="yes">
        <source>%n row(s): %1</source>
        <translation>
            <numerusform>%n 行：%1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n item(s): %1</source>
        <translation>
            <numerusform>%n 项：%1</numerusform>
        </translation>
    </message>
    <message>
        <source>Not changed by the last run</source>
        <translation>上次运行没有改变</translation>
    </message>
    <message>
        <source>Before the last run: %1
After the last run: %2</source>
        <translation>上次运行之前：%1
上次运行之后：%2</translation>
    </message>
    <message>
        <source>Change type of “%1”</source>
        <translation>更改“%1”的类型</translation>
    </message>
    <message>
        <source>Change value of “%1”</source>
        <translation>更改“%1”的值</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Start value</source>
        <translation>初始值</translation>
    </message>
    <message>
        <source>After the last run</source>
        <translation>上次运行之后</translation>
    </message>
    <message>
        <source>%1, changed by the last run</source>
        <translation>%1，上次运行更改了它</translation>
    </message>
    <message>
        <source>Now, in the run</source>
        <translation>运行中的当前值</translation>
    </message>
</context>
<context>
    <name>Workbench::VariablesPane</name>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Edit value…</source>
        <translation>编辑值…</translation>
    </message>
    <message>
        <source>Keep results</source>
        <translation>保留结果</translation>
    </message>
    <message>
        <source>Variables</source>
        <translation>变量</translation>
    </message>
    <message>
        <source>Add variable</source>
        <translation>添加变量</translation>
    </message>
    <message>
        <source>Remove variable “%1”</source>
        <translation>删除变量“%1”</translation>
    </message>
    <message>
        <source>Change value of “%1”</source>
        <translation>更改“%1”的值</translation>
    </message>
    <message>
        <source>variable%1</source>
        <translation>变量%1</translation>
    </message>
    <message>
        <source>&amp;Add variable</source>
        <translation>添加变量(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Remove variable</source>
        <translation>删除变量(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Edit value…</source>
        <translation>编辑值(&amp;E)…</translation>
    </message>
    <message>
        <source>&amp;Keep results</source>
        <translation>保留结果(&amp;K)</translation>
    </message>
    <message>
        <source>Make the values after the last run those that the script starts with (%1)</source>
        <translation>把上次运行之后的值作为脚本的初始值（%1）</translation>
    </message>
    <message>
        <source>&amp;Where it is used</source>
        <translation>使用位置(&amp;W)</translation>
    </message>
    <message>
        <source>Uses</source>
        <translation>使用位置</translation>
    </message>
    <message>
        <source>Remove variable</source>
        <translation>移除变量</translation>
    </message>
    <message numerus="yes">
        <source>“%1” is used by %n step(s): %2. Without it they may skip their work.</source>
        <translation>
            <numerusform>%n 个步骤使用了“%1”：%2。没有它，这些步骤可能会跳过。</numerusform>
        </translation>
    </message>
    <message>
        <source>Show uses</source>
        <translation>显示使用位置</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
</TS>
