// SPDX-License-Identifier: Apache-2.0
/**
 * The letter layouts and the symbols page, as data.
 *
 * A row is a list of key texts separated by blanks. Rows fill twelve columns, so that the keys
 * keep their places when the layout changes; a text of several characters takes two columns.
 * Punctuation beyond the letters is what addresses and log-ins of that language need most.
 *
 * No row offers the single quote: the portal's side cannot receive it.
 */
var Layouts = {
    columns: 12,

    // Every page starts with this row.
    digits: '1 2 3 4 5 6 7 8 9 0 - _',

    symbols: [
        '! " # $ % & ( ) * + = ?',
        '@ / \\ | : ; , . ~ ^ ` €',
        '[ ] { } < > http:// www. .com'
    ],

    // In the order that a box without a setting of its own shows them.
    names: ['en', 'ru', 'uk', 'de', 'tr'],

    // "title" names the layout, "abc" the way back to it from the symbols page, and "upper" holds
    // the capitals that toUpperCase() gets wrong for the language.
    letters: {
        en: {
            title: 'English',
            abc: 'abc',
            rows: [
                'q w e r t y u i o p @ /',
                'a s d f g h j k l : & =',
                'z x c v b n m , . ? ! +'
            ],
            upper: {}
        },
        ru: {
            title: 'Русский',
            abc: 'абв',
            rows: [
                'й ц у к е н г ш щ з х ъ',
                'ф ы в а п р о л д ж э ё',
                'я ч с м и т ь б ю , . ?'
            ],
            upper: {}
        },
        // U+2019 is the Ukrainian apostrophe, a letter of common words.
        uk: {
            title: 'Українська',
            abc: 'абв',
            rows: [
                'й ц у к е н г ш щ з х ї',
                'ф і в а п р о л д ж є ґ',
                'я ч с м и т ь б ю ’ , .'
            ],
            upper: {}
        },
        de: {
            title: 'Deutsch',
            abc: 'abc',
            rows: [
                'q w e r t z u i o p ü @',
                'a s d f g h j k l ö ä /',
                'y x c v b n m ß , . ? :'
            ],
            upper: { 'ß': 'ẞ' }
        },
        tr: {
            title: 'Türkçe',
            abc: 'abc',
            rows: [
                'q w e r t y u ı o p ğ ü',
                'a s d f g h j k l ş i @',
                'z x c v b n m ö ç . : /'
            ],
            upper: { 'i': 'İ' }
        }
    }
};
