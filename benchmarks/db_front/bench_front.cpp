#include "CatalogOfTests.h"
#include "Compiler.h"
#include "Parser.h"

#include <benchmark/benchmark.h>

// The way of a statement of 1 KB from its text to the engine's SQL. The limit is 0.3 ms.

static const char* const statement = R"(
select d.dname department, e.job, count(*) heads, sum(e.sal) salaries,
       round(avg(e.sal + nvl(e.comm, 0)), 2) mean_income,
       max(e.hiredate) last_hired, min(e.ename) keep (dense_rank first order by e.sal desc) best,
       decode(e.job, 'CLERK', 'office', 'SALESMAN', 'shop', 'MANAGER', 'head', 'other') place,
       case when sum(e.sal) > 10000 then 'dear' when sum(e.sal) > 5000 then 'fair' else 'cheap' end
  from emp e, dept d, (select mgr, count(*) staff from emp group by mgr) m
 where e.deptno = d.deptno and m.mgr(+) = e.empno
   and e.hiredate between date '1980-01-01' and to_date('31-12-1987', 'dd-mm-yyyy')
   and (e.sal > 1000 or e.comm is not null) and upper(e.ename) like '%A%'
   and e.deptno in (select deptno from dept where loc in ('DALLAS', 'CHICAGO', 'NEW YORK'))
   and not exists (select 1 from emp x where x.mgr = e.empno and x.sal > e.sal)
 group by d.dname, e.job
having count(*) > 1 and sum(e.sal) < 1000000
 order by d.dname, salaries desc nulls last, 3)";

static void parse(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(ora::parseStatement(statement));
}
BENCHMARK(parse)->Unit(benchmark::kMicrosecond);

static void parseAndBind(benchmark::State& state) {
    const CatalogOfTests catalog;
    for (auto _ : state) {
        const auto tree = ora::parseStatement(statement);
        benchmark::DoNotOptimize(ora::compile(catalog, *tree->statement));
    }
}
BENCHMARK(parseAndBind)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
