// Writing the clipboard by `navigator.clipboard`, which the engine refuses as a whole or allows as a
// whole, without an act of the user's too. The command "copy" it allows right after such an act, in
// the frame where that was, so the text goes that way. A page that replaces any of this only
// changes what it may do anyway.
(() => {
    'use strict';
    if (typeof Clipboard !== 'function' || typeof ClipboardItem !== 'function')
        return;
    const document = window.document;
    const { defineProperty } = Object;
    const native = Clipboard.prototype.write;
    const texts = ['text/plain', 'text/html'];

    const copy = entries => {
        let isPut = false;
        const put = event => {
            if (!event.isTrusted)
                return;
            event.preventDefault();
            event.stopImmediatePropagation();
            for (const [type, text] of entries)
                event.clipboardData.setData(type, text);
            isPut = true;
        };
        window.addEventListener('copy', put, true);
        try {
            isPut = document.execCommand('copy') && isPut;
        } finally {
            window.removeEventListener('copy', put, true);
        }
        if (!isPut)
            throw new DOMException('Write permission denied.', 'NotAllowedError');
    };

    const methods = {
        async writeText(text) {
            copy([['text/plain', `${text}`]]);
        },
        async write(items) {
            const all = [...items];
            if (all.length !== 1 || !all[0].types.every(type => texts.includes(type)))
                return native.call(this, items);
            const entries = [];
            for (const type of all[0].types)
                entries.push([type, await (await all[0].getType(type)).text()]);
            copy(entries);
        },
    };
    for (const [name, value] of Object.entries(methods)) {
        defineProperty(Clipboard.prototype, name,
                       { value, writable: true, enumerable: true, configurable: true });
    }
})();
