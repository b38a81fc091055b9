// Classes: methods are functions; static blocks and field initialisers get frames of their own.

passMethods({
    class(node, context) {
        const id = this.addFunction(node, node.start, node.id && node.id.name);
        this.mark(node.start + 'class'.length, id);
        this.shadow(node.id ? [node.id.name] : [], () => {
            this.expression(node.superClass, context);
            for (const member of node.body.body) {
                if (member.type === 'StaticBlock') {
                    this.staticBlock(member);
                    continue;
                }
                if (member.computed)
                    this.expression(member.key, context);
                if (member.type === 'PropertyDefinition')
                    this.field(member);
                else
                    this.function(member.value, member, context,
                        Boolean(node.superClass) && member.kind === 'constructor');
            }
        });
    },

    staticBlock(member) {
        const id = this.addFunction(member, member.start, 'static', {keepsThis: true});
        this.shadow(this.imports ? functionNames(member) : [], () => {
            this.functionBody(member, {id, keepsThis: true, isArrow: false, isDerivedConstructor: false,
                outer: new FrameContext()});
        });
    },

    field({value, key, computed}) {
        if (!value)
            return;
        const context = new FrameContext({depth: this.I + '[0]'});
        if (isHarmless(value) || isAnonymousDefinition(value)) {
            this.expression(value, context);
            return;
        }
        const name = computed ? '' : key.type === 'Literal' ? String(key.value) : key.name;
        const id = this.addFunction(value, value.start, name, {keepsThis: true});
        context.functionId = id;
        this.insert(value.start, ` ${this.prefix}q(${this.prefix}p(${id},${this.lineOf(value.start) * 2},this),`);
        this.expression(value, context);
        this.insert(value.end, ')');
    },
});
