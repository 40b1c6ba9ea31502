#!/usr/bin/env python3
"""Writes data/Ipacode.txt: the phonetic symbols of standard Chinese, in GBK with the codes of docs/ipa-codes.md.

A row of the index: symbol, its codes (a plain letter stands for itself), Pinyin, example, description, separated by
tabs. Other lines are headings.
"""
import os
import re

ROOT = os.path.join(os.path.dirname(__file__), "..")

ROWS = """
声母
p|b|爸 bà|双唇、不送气、清塞音
pʰ|p|怕 pà|双唇、送气、清塞音
m|m|妈 mā|双唇、鼻音
f|f|发 fā|唇齿、清擦音
t|d|大 dà|舌尖中、不送气、清塞音
tʰ|t|他 tā|舌尖中、送气、清塞音
n|n|拿 ná|舌尖中、鼻音
l|l|拉 lā|舌尖中、边音
k|g|哥 gē|舌面后、不送气、清塞音
kʰ|k|科 kē|舌面后、送气、清塞音
x|h|喝 hē|舌面后、清擦音
tɕ|j|鸡 jī|舌面前、不送气、清塞擦音
tɕʰ|q|七 qī|舌面前、送气、清塞擦音
ɕ|x|西 xī|舌面前、清擦音
tʂ|zh|知 zhī|舌尖后、不送气、清塞擦音
tʂʰ|ch|吃 chī|舌尖后、送气、清塞擦音
ʂ|sh|诗 shī|舌尖后、清擦音
ʐ|r|日 rì|舌尖后、浊擦音
ɻ|r|人 rén|舌尖后、通音（r 的另一种读法）
ts|z|资 zī|舌尖前、不送气、清塞擦音
tsʰ|c|雌 cí|舌尖前、送气、清塞擦音
s|s|思 sī|舌尖前、清擦音
ŋ|ng|昂 áng|舌面后、鼻音，只作韵尾
ʔ||安 ān|喉塞音，零声母音节开头可有

单元音
ᴀ|a|啊 ā|央、低、不圆唇元音，单韵母
a|a|安 ān|前、低、不圆唇元音，ai、an 的韵腹
ɑ|a|昂 áng|后、低、不圆唇元音，ao、ang 的韵腹
o|o|波 bō|后、半高、圆唇元音
ɤ|e|鹅 é|后、半高、不圆唇元音，单韵母
ə|e|恩 ēn|央、中元音，en、eng 的韵腹
e|e|杯 bēi|前、半高、不圆唇元音，ei 的韵腹
ɛ|ê|欸 ê|前、半低、不圆唇元音，ie、üe 的韵腹
æ|a|烟 yān|前、次低元音，ian 韵腹的另一种读法
i|i|衣 yī|前、高、不圆唇元音
u|u|乌 wū|后、高、圆唇元音
ʊ|o|东 dōng|后、次高、圆唇元音，ong 的韵腹
y|ü|迂 yū|前、高、圆唇元音
ɿ|-i|资 zī|舌尖前、高、不圆唇元音，z、c、s 之后
ʅ|-i|知 zhī|舌尖后、高、不圆唇元音，zh、ch、sh、r 之后
ɚ|er|儿 ér|卷舌、央、中元音

复韵母和鼻韵母
ai|ai|哀 āi|前响复韵母
ei|ei|杯 bēi|前响复韵母
ɑu|ao|熬 áo|前响复韵母
ou|ou|欧 ōu|前响复韵母
an|an|安 ān|前鼻韵母
ən|en|恩 ēn|前鼻韵母
ɑŋ|ang|昂 áng|后鼻韵母
əŋ|eng|灯 dēng|后鼻韵母
ʊŋ|ong|东 dōng|后鼻韵母
iᴀ|ia|鸭 yā|后响复韵母
iɛ|ie|耶 yē|后响复韵母
iɑu|iao|腰 yāo|中响复韵母
iou|iou|优 yōu|中响复韵母，前有声母时写作 iu
iɛn|ian|烟 yān|前鼻韵母
in|in|因 yīn|前鼻韵母
iɑŋ|iang|央 yāng|后鼻韵母
iŋ|ing|英 yīng|后鼻韵母
uᴀ|ua|蛙 wā|后响复韵母
uo|uo|窝 wō|后响复韵母
uai|uai|歪 wāi|中响复韵母
uei|uei|威 wēi|中响复韵母，前有声母时写作 ui
uan|uan|弯 wān|前鼻韵母
uən|uen|温 wēn|前鼻韵母，前有声母时写作 un
uɑŋ|uang|汪 wāng|后鼻韵母
uəŋ|ueng|翁 wēng|后鼻韵母
yɛ|üe|约 yuē|后响复韵母
yæn|üan|冤 yuān|前鼻韵母
yn|ün|晕 yūn|前鼻韵母
yʊŋ|iong|雍 yōng|后鼻韵母

声调和附加符号
˥|ˉ|妈 mā|阴平，调值 55
˧˥|ˊ|麻 má|阳平，调值 35
˨˩˦|ˇ|马 mǎ|上声，调值 214
˥˩|ˋ|骂 mà|去声，调值 51
ʰ||怕 pà|送气
ː|||长音
ˈ|||重音，写在音节前
ˌ|||次重音，写在音节前
"""


def phonetic_codes():
    codes = {}
    with open(os.path.join(ROOT, "docs", "ipa-codes.md"), encoding="utf-8") as table:
        for line in table:
            match = re.match(r"\| \d+ \| (AA[0-9A-F]{2})\*? \| (.) \|", line)
            if match:
                codes[match.group(2)] = match.group(1)
    assert len(codes) == 94
    return codes


def main():
    codes = phonetic_codes()

    def gbk(text, phonetic):
        return b"".join(bytes.fromhex(codes[c]) if phonetic and c in codes else c.encode("gbk") for c in text)

    out = [gbk("汉语常用国际音标索引", False), b"", gbk("音标\t编码\t拼音\t例字\t说明", False)]
    for line in ROWS.strip("\n").split("\n"):
        fields = line.split("|")
        if len(fields) == 1:
            out.append(gbk(line, False))
            continue
        symbol, pinyin, example, description = fields
        numbers = " ".join(codes.get(c, c) for c in symbol)
        out.append(b"\t".join([gbk(symbol, True), numbers.encode(), gbk(pinyin, False), gbk(example, False), gbk(description, False)]))
    with open(os.path.join(ROOT, "data", "Ipacode.txt"), "wb") as target:
        target.write(b"\r\n".join(out) + b"\r\n")


main()
