#include "boolean/combine.hpp"
#include "polygons.hpp"

namespace orva::bspcsg {

TEST(Combine, HandsTheRecipeAnEmptyResultAndBothTrees) {
    PolygonList a = listOf({level(1)});
    PolygonList b = listOf({level(2), level(3)});
    PolygonList out = listOf({level(9)});
    combinePolygonLists(
        [](Node& result, Node&& treeA, Node&& treeB) {
            EXPECT_TRUE(result.polygons.empty() && !result.front && !result.back);
            EXPECT_EQ(treeA.plane.w, 1.0);
            EXPECT_EQ(treeB.plane.w, 2.0);
            result.build(treeB.collectPolygons(0));
        },
        out, a, b);
    EXPECT_TRUE(sameBits(out, listOf({level(2), level(3)}))) << "what out held is replaced";
    EXPECT_TRUE(a.empty() && b.empty()) << "the operands are spent";
}

TEST(Combine, WithoutARecipeThrowsBadFunctionCall) {
    PolygonList a = listOf({level(1)});
    PolygonList b = listOf({level(2)});
    PolygonList out = listOf({level(9)});
    EXPECT_THROW(combinePolygonLists(CombineFunction(), out, a, b), std::bad_function_call);
    EXPECT_TRUE(sameBits(out, listOf({level(9)})));
    EXPECT_TRUE(a.empty() && b.empty()) << "both trees were built by then";

    test::Mesh output;
    EXPECT_THROW(combineMeshes(output, test::unitCube(), test::unitCube(), CombineFunction()), std::bad_function_call);
    EXPECT_TRUE(output.vertices.empty());
}

TEST(Combine, RecipesAreFunctionsOfTheOneSignature) {
    for (const CombineFunction& recipe :
         {CombineFunction(unionTrees), CombineFunction(subtractTrees), CombineFunction(intersectTrees)}) {
        PolygonList a = polygonsOf(test::unitCube());
        PolygonList b = polygonsOf(test::box({0.5, 0.5, 0.5}, {2, 2, 2}));
        PolygonList out;
        combinePolygonLists(recipe, out, a, b);
        EXPECT_FALSE(out.empty());
    }
}

} // namespace orva::bspcsg
