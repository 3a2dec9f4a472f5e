// Runs first in every frame, in a world of its own that the page cannot see, and tells what the
// engine has no signal for. The mark in front is secret, so a page cannot send such lines itself.
// Events that the page made up are not the user's doing or the engine's, and are not told; what our
// scripts in the page's own world send is the page's word, and only taken in the form it has.
(() => {
    'use strict';
    const tell = (what, value) =>
        console.debug('%MARK%' + JSON.stringify([what, window === window.top, value]));

    tell('start', location.href);
    // The engine's own error page is replaced by ours, and not seen meanwhile.
    if (location.protocol === 'chrome-error:') {
        const hiding = new CSSStyleSheet();
        hiding.replaceSync(':root { visibility: hidden; }');
        document.adoptedStyleSheets = [hiding];
    }
    // Focus told to a process before its document came is lost.
    const checkFocus = () => {
        if (window === window.top && !document.hidden && !document.hasFocus())
            tell('unfocused', '');
    };
    addEventListener('DOMContentLoaded', checkFocus);
    addEventListener('load', (event) => {
        if (!event.isTrusted)
            return;
        tell('load', location.href);
        checkFocus();
    });
    const longestPlace = 40;
    if (window === window.top)
        visualViewport?.addEventListener('orvane-place', (event) => {
            const place = event.detail;
            if (typeof place === 'string' && place.length <= longestPlace)
                tell('place', place);
        });
    visualViewport?.addEventListener('orvane-live', () => tell('live', ''), {once: true});
    visualViewport?.addEventListener('orvane-column', (event) => {
        const column = event.detail;
        if (Number.isSafeInteger(column))
            tell('column', column);
    });

    const textTypes = ['text', 'search', 'url', 'tel', 'email', 'password', 'number', 'date',
        'datetime-local', 'month', 'time', 'week'];
    // What the element takes: 'rich' text and pictures, 'plain' text, or 'none' of them.
    const takenBy = (element) => {
        if (!element)
            return 'none';
        if (element.isContentEditable)
            return 'rich';
        const isField = element instanceof HTMLTextAreaElement
            || (element instanceof HTMLInputElement && textTypes.includes(element.type));
        return isField && !element.readOnly && !element.disabled ? 'plain' : 'none';
    };
    const activeElement = () => {
        let element = document.activeElement;
        while (element?.shadowRoot?.activeElement)
            element = element.shadowRoot.activeElement;
        return element;
    };
    // What the user enters would be lost with the page.
    let isTyped = false;
    addEventListener('input', (event) => {
        if (event.isTrusted && !isTyped) {
            isTyped = true;
            tell('typed', '');
        }
    }, true);
    // A field that only the window takes the keyboard from stays the one to edit: a menu or a side
    // bar has it meanwhile. Another frame of the page tells of its own when it gets it.
    addEventListener('focusin', (event) => {
        if (event.isTrusted)
            tell('edit', takenBy(event.composedPath()[0]));
    }, true);
    addEventListener('focusout', (event) => {
        if (event.isTrusted && event.composedPath()[0] !== activeElement())
            tell('edit', 'none');
    }, true);
    addEventListener('focus', (event) => {
        if (event.isTrusted)
            tell('edit', takenBy(activeElement()));
    });

    // With Shift the right button always opens the user's own menu, whatever the page does with it.
    const rightButton = 2;
    addEventListener('contextmenu', (event) => {
        if (event.isTrusted && event.shiftKey && event.button === rightButton)
            event.stopImmediatePropagation();
    }, true);

    // Backspace leads back only where nothing else can have been meant by it: the keyboard is in
    // the document as a whole, a link or a button. A field in a closed shadow tree looks like the
    // element that the tree is in, and a canvas or an object that was clicked may be an editor.
    let isInPicture = false;
    addEventListener('pointerdown', (event) => {
        const pressed = event.composedPath()[0];
        if (event.isTrusted)
            isInPicture = pressed instanceof HTMLCanvasElement
                || pressed instanceof HTMLEmbedElement || pressed instanceof HTMLObjectElement;
    }, true);
    const textRoles = ['application', 'combobox', 'searchbox', 'spinbutton', 'textbox']
        .map((role) => `[role~="${role}" i]`).join();
    const mayLeadBack = (element) => !isInPicture && !!element && !element.isContentEditable
        && document.designMode !== 'on' && !element.closest(textRoles)
        && (element instanceof HTMLHtmlElement || element instanceof HTMLBodyElement
            || element instanceof HTMLAnchorElement || element instanceof HTMLAreaElement
            || element instanceof HTMLButtonElement);
    addEventListener('keydown', (event) => {
        const isPlain = !event.ctrlKey && !event.altKey && !event.shiftKey && !event.metaKey;
        if (!event.isTrusted || event.key !== 'Backspace' || !isPlain || event.repeat
            || event.isComposing || !mayLeadBack(event.composedPath()[0]))
            return;
        // Once the page has had it, which may have taken it or gone on into a field.
        setTimeout(() => {
            if (!event.defaultPrevented && mayLeadBack(activeElement() ?? document.documentElement))
                tell('back', '');
        });
    }, true);
})();
