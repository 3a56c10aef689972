#include "DdlParts.h"
#include "ErrorText.h"

// CREATE SEQUENCE, ALTER SEQUENCE, and the sequences of identity columns.

namespace ora {

namespace {

constexpr int noSuchSequence = 2289;
constexpr int startCannotChange = 2283;
constexpr int noOptions = 2286;
constexpr int notInteger = 4001;
constexpr int zeroIncrement = 4002;
constexpr int incrementTooBig = 4005;
constexpr int minimumAboveCurrent = 4007;
constexpr int maximumBelowCurrent = 4009;
constexpr int cacheOfOne = 4010;
constexpr int cycleNeedsMaximum = 4015;
constexpr int cycleNeedsMinimum = 4016;
constexpr int minimumNotBelowMaximum = 4004;
constexpr int startBelowMinimum = 4006;
constexpr int startAboveMaximum = 4008;
constexpr int cacheBeyondCycle = 4013;

OracleNumber numberOf(std::string_view text) {
    return OracleNumber::parse(text).value_or(OracleNumber());
}

OracleNumber ascendingMaximum() {
    return numberOf("9999999999999999999999999999");
}
OracleNumber descendingMinimum() {
    return numberOf("-999999999999999999999999999");
}

void readLimits(const SequenceOptions& options, SequenceDefinition& sequence) {
    const bool upwards = !sequence.increment.isNegative();
    if (options.noMinValue)
        sequence.minimum = upwards ? OracleNumber(1) : descendingMinimum();
    else if (!options.minValue.empty())
        sequence.minimum = numberOf(options.minValue);
    if (options.noMaxValue)
        sequence.maximum = upwards ? ascendingMaximum() : OracleNumber(-1);
    else if (!options.maxValue.empty())
        sequence.maximum = numberOf(options.maxValue);
}

bool hasOptions(const SequenceOptions& options) {
    const bool numbers = !options.startWith.empty() || !options.incrementBy.empty() ||
                         !options.minValue.empty() || !options.maxValue.empty() ||
                         !options.cache.empty();
    return numbers || options.given;
}

void requireIntegers(const SequenceOptions& options) {
    struct Named {
        const char* name;
        std::string_view text;
    };
    const Named numbers[] = {{"START WITH", options.startWith},
                             {"INCREMENT BY", options.incrementBy},
                             {"MINVALUE", options.minValue},
                             {"MAXVALUE", options.maxValue},
                             {"CACHE", options.cache}};
    for (const Named& number : numbers) {
        if (number.text.find('.') != number.text.npos)
            throw OraError(notInteger, std::string("sequence parameter ") + number.name +
                                           " must be an integer");
    }
    if (!options.cache.empty() && numberOf(options.cache) <= OracleNumber(1))
        raise(cacheOfOne);
}

void readFlags(const SequenceOptions& options, SequenceDefinition& sequence) {
    if (options.noCache)
        sequence.cache = 0;
    else if (!options.cache.empty())
        sequence.cache = int(numberOf(options.cache).toInteger());
    sequence.cycle = options.cycle || (sequence.cycle && !options.noCycle);
    sequence.ordered = options.order || sequence.ordered;
}

void requireSoundRange(const SequenceDefinition& sequence) {
    if (sequence.increment.isZero())
        throw OraError(zeroIncrement, "INCREMENT must be a nonzero integer");
    if (sequence.minimum >= sequence.maximum)
        raise(minimumNotBelowMaximum);
    if (sequence.increment.absolute() >= sequence.maximum - sequence.minimum + OracleNumber(1))
        raise(incrementTooBig);
}

// The open end of a sequence that starts again must be said.
void requireCycleEnd(const SequenceOptions& options, const SequenceDefinition& sequence) {
    if (!sequence.cycle)
        return;
    const bool upwards = !sequence.increment.isNegative();
    if (upwards && options.maxValue.empty())
        raise(cycleNeedsMaximum);
    if (!upwards && options.minValue.empty())
        raise(cycleNeedsMinimum);
}

void requireSound(const SequenceDefinition& sequence) {
    requireSoundRange(sequence);
    if (sequence.next < sequence.minimum)
        raise(startBelowMinimum);
    if (sequence.next > sequence.maximum)
        raise(startAboveMaximum);
    const OracleNumber cycle =
        (sequence.maximum - sequence.minimum) / sequence.increment.absolute() + OracleNumber(1);
    if (sequence.cycle && OracleNumber(sequence.cache) > cycle)
        raise(cacheBeyondCycle);
}

} // namespace

SequenceDefinition sequenceFrom(const SequenceOptions& options) {
    requireIntegers(options);
    SequenceDefinition sequence;
    if (!options.incrementBy.empty())
        sequence.increment = numberOf(options.incrementBy);
    const bool upwards = !sequence.increment.isNegative();
    sequence.minimum = upwards ? OracleNumber(1) : descendingMinimum();
    sequence.maximum = upwards ? ascendingMaximum() : OracleNumber(-1);
    readLimits(options, sequence);
    readFlags(options, sequence);
    sequence.next = upwards ? sequence.minimum : sequence.maximum;
    if (!options.startWith.empty())
        sequence.next = numberOf(options.startWith);
    requireCycleEnd(options, sequence);
    requireSound(sequence);
    return sequence;
}

void createSequence(const DdlContext& context, const SequenceStatement& statement) {
    const std::string name = ownName(context, statement.name);
    requireFree(context, NameSpace::Relation, name);
    SequenceDefinition sequence = sequenceFrom(statement.options);
    sequence.id = context.store().addObject(NameSpace::Relation, name, "SEQUENCE");
    Sequences::save(context.db, sequence);
    context.sequences.forget(name);
}

void alterSequence(const DdlContext& context, const SequenceStatement& statement) {
    const auto object = context.catalog.isOwn(statement.name.schema.text)
                            ? context.catalog.ownObject(statement.name.name.text)
                            : std::nullopt;
    if (!object || object->kind != "SEQUENCE")
        raise(noSuchSequence);
    if (!statement.options.startWith.empty() && !statement.options.restart)
        throw OraError(startCannotChange, "cannot alter starting sequence number");
    if (!hasOptions(statement.options))
        throw OraError(noOptions, "no options specified for ALTER SEQUENCE");
    requireIntegers(statement.options);
    context.sequences.giveBack(object->name);
    SequenceDefinition sequence = Sequences::load(context.db, object->id);
    const OracleNumber last = sequence.next - sequence.increment;
    if (!statement.options.incrementBy.empty())
        sequence.increment = numberOf(statement.options.incrementBy);
    sequence.next = last + sequence.increment;
    readLimits(statement.options, sequence);
    readFlags(statement.options, sequence);
    if (statement.options.restart) {
        const bool upwards = !sequence.increment.isNegative();
        sequence.next = upwards ? sequence.minimum : sequence.maximum;
        if (!statement.options.startWith.empty())
            sequence.next = numberOf(statement.options.startWith);
    }
    requireSoundRange(sequence);
    if (!statement.options.maxValue.empty() && sequence.maximum < last)
        raise(maximumBelowCurrent);
    if (!statement.options.minValue.empty() && sequence.minimum > last)
        raise(minimumAboveCurrent);
    Sequences::save(context.db, sequence);
    context.sequences.forget(object->name);
}

} // namespace ora
