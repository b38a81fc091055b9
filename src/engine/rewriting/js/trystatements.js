// try: the exception is reported where it is first seen, and whether it is caught is known from the
// slots. A finally gets a catch of its own in front, which reports and throws on.

passMethods({
    tryStatement(node, context) {
        const {block, handler, finalizer} = node;
        if (finalizer && handler)
            this.insert(node.start, 'try{');
        if (handler) {
            this.within(context, {tries: context.tries + 1, dropsByThrow: false},
                () => this.block(block, context));
            this.catchClause(handler, context);
        } else {
            this.block(block, context);
        }
        if (finalizer)
            this.finallyClause(handler ? handler.end : block.end, handler ? '}' : '', finalizer, context);
        this.insert(node.end, this.quiet(this.slotText(node.end, context), context));
    },

    catchClause(handler, context) {
        const {param, body} = handler;
        const resume = context.suspends ? this.resumeText(context, handler.start) + ',' : '';
        const caught = id => this.quiet(
            `${resume}${this.slotText(handler.start, context)},${this.prefix}c(${id},${context.depth})`, context);
        const names = boundNames(param);
        if (param && param.type !== 'Identifier') {
            // the pattern is bound inside the block, so that the hook sees the exception first
            this.shadow(names, () => {
                this.insert(param.start, `${this.e}){${caught(this.e)}let `);
                this.pattern(param, context);
                this.insert(param.end, `=${this.e};`);
                this.edits.blank(param.end, body.start);
                this.catchBody(body, context, names);
                this.insert(body.end, '}');
            });
            return;
        }
        if (!param)
            this.insert(body.start, `(${this.e})`);
        this.insert(body.start + 1, caught(param ? param.name : this.e));
        this.shadow(names, () => this.catchBody(body, context, names));
    },

    catchBody(body, context, names) {
        const own = lexicalNames(body.body);
        this.shadow(own, () => {
            this.inDebugScope(body.start + 1, own.concat(names), context,
                () => this.statements(body.body, context));
        });
    },

    finallyClause(position, close, finalizer, context) {
        const resume = context.suspends ? this.resumeText(context, finalizer.start) : '';
        this.insert(position, `${close}catch(${this.e}){${resume && resume + ';'}` +
            `throw ${this.prefix}x(${this.e},${context.depth})}`);
        if (resume)
            this.insert(finalizer.start + 1, this.quiet(resume, context));
        this.within(context, {dropsByThrow: true, dropsByReturn: true, dropsByJump: true},
            () => this.block(finalizer, context));
    },
});
